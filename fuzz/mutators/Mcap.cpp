#include "mutators/Mutators.h"
#include "mutators/Pieces.h"

namespace orvantis::fuzz {
namespace {

constexpr std::size_t magicSize = 8;
constexpr std::size_t headSize = 9;  // of a record: its kind and the size of what follows
constexpr std::uint8_t chunkKind = 6;
constexpr std::size_t plainSize =
    headSize + 16;                               // in a chunk that is not compressed, the size of its records
constexpr std::size_t checksum = plainSize + 8;  // then their checksum, and a compression without letters
constexpr std::size_t storedSize = checksum + 4 + 4;
constexpr std::size_t firstInChunk = storedSize + 8;

// The records from `begin` on, as far as they are whole; what is left is behind them.
Pieces recordsOf(const Content& content, std::size_t begin) {
  Pieces records{bytesOf(content, {0, begin}), {}, {}};
  while (content.size() - begin >= headSize &&
         numberAt(content, begin + 1, 8) <= content.size() - begin - headSize) {
    const std::size_t end = begin + headSize + static_cast<std::size_t>(numberAt(content, begin + 1, 8));
    records.pieces.push_back(bytesOf(content, {begin, end}));
    begin = end;
  }
  records.behind = bytesOf(content, {begin, content.size()});
  return records;
}

bool isPlainChunk(const Content& record) {
  return record[0] == chunkKind && record.size() >= firstInChunk && numberAt(record, checksum + 4, 4) == 0;
}

void setSizes(Content& record) {
  setNumber(record, 1, 8, record.size() - headSize);
  if (isPlainChunk(record)) {
    setNumber(record, plainSize, 8, record.size() - firstInChunk);
    setNumber(record, storedSize, 8, record.size() - firstInChunk);
    setNumber(record, checksum, 4, 0);  // it is not checked then
  }
}

void changeRecord(Content& record, Chance& chance);

bool changeRecords(Content& content, std::size_t begin, Chance& chance) {
  Pieces records = recordsOf(content, begin);
  if (records.pieces.empty()) {
    return false;
  }
  if (chance.oneIn(4)) {
    records.rearrange(chance);
  } else {
    changeRecord(records.pieces[chance.below(records.pieces.size())], chance);
  }
  content = records.joined();
  return true;
}

void changeRecord(Content& record, Chance& chance) {
  if (!(isPlainChunk(record) && !chance.oneIn(4) && changeRecords(record, firstInChunk, chance))) {
    Content inside = bytesOf(record, {headSize, record.size()});
    changeAnywhere(inside, chance);
    replace(record, {headSize, record.size()}, inside);
  }
  setSizes(record);
}

}  // namespace

bool mutateMcap(Content& content, Chance& chance) {
  return content.size() > magicSize && changeRecords(content, magicSize, chance);
}

}  // namespace orvantis::fuzz
