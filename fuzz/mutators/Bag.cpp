#include <algorithm>
#include <string_view>
#include <vector>

#include "mutators/Mutators.h"
#include "mutators/Pieces.h"

namespace orvantis::fuzz {
namespace {

constexpr std::size_t magicSize = 13;
constexpr std::size_t sizeWidth = 4;

// Parts that begin with their size, from `begin` on, as far as they are whole; what is left is behind them.
Pieces sizedParts(const Content& content, std::size_t begin) {
  Pieces parts{bytesOf(content, {0, begin}), {}, {}};
  while (content.size() - begin >= sizeWidth &&
         numberAt(content, begin, sizeWidth) <= content.size() - begin - sizeWidth) {
    const std::size_t end = begin + sizeWidth + static_cast<std::size_t>(numberAt(content, begin, sizeWidth));
    parts.pieces.push_back(bytesOf(content, {begin, end}));
    begin = end;
  }
  parts.behind = bytesOf(content, {begin, content.size()});
  return parts;
}

void setSize(Content& part) {
  setNumber(part, 0, sizeWidth, part.size() - sizeWidth);
}

void changeBytes(Content& part, Chance& chance) {
  Content inside = bytesOf(part, {sizeWidth, part.size()});
  changeAnywhere(inside, chance);
  replace(part, {sizeWidth, part.size()}, inside);
}

// A header consists of fields "name=value", each behind its size.
void changeHeader(Content& header, Chance& chance) {
  Pieces fields = sizedParts(header, sizeWidth);
  if (fields.pieces.empty() || !fields.behind.empty()) {
    changeBytes(header, chance);
    return;
  }
  if (chance.oneIn(3)) {
    fields.rearrange(chance);
  } else {
    Content& field = fields.pieces[chance.below(fields.pieces.size())];
    const auto equals = std::find(field.begin() + sizeWidth, field.end(), '=');
    const auto value = static_cast<std::size_t>(equals - field.begin()) + 1;
    if (equals != field.end() && field.size() - value >= 1 && field.size() - value <= 8 && !chance.oneIn(3)) {
      changeNumber(field, value, field.size() - value, chance);
    } else {
      changeBytes(field, chance);
      setSize(field);
    }
  }
  header = fields.joined();
}

bool isPlainChunk(const Content& header) {
  constexpr std::string_view plain = "compression=none";
  return std::search(header.begin(), header.end(), plain.begin(), plain.end()) != header.end();
}

// The header of a chunk says how large it is when it is unfolded.
void setUnfoldedSize(Content& header, std::size_t size) {
  constexpr std::string_view name = "size=";
  const auto at = std::search(header.begin(), header.end(), name.begin(), name.end());
  const auto value = static_cast<std::size_t>(at - header.begin()) + name.size();
  if (at != header.end() && value + sizeWidth <= header.size()) {
    setNumber(header, value, sizeWidth, size);
  }
}

// A record is a header and its data, each behind its size.
bool changeRecords(Content& content, std::size_t begin, Chance& chance) {
  Pieces parts = sizedParts(content, begin);
  const std::size_t numRecords = parts.pieces.size() / 2;
  if (numRecords == 0) {
    return false;
  }
  const std::size_t chosen = 2 * chance.below(numRecords);
  Content& header = parts.pieces[chosen];
  Content& data = parts.pieces[chosen + 1];
  const auto at = [&parts](std::size_t i) { return parts.pieces.begin() + static_cast<std::ptrdiff_t>(i); };
  switch (chance.below(5)) {
    case 0:
      parts.pieces.erase(at(chosen), at(chosen + 2));
      break;
    case 1: {
      const std::vector<Content> record(at(chosen), at(chosen + 2));
      parts.pieces.insert(at(2 * chance.below(numRecords)), record.begin(), record.end());
      break;
    }
    case 2:
      changeHeader(header, chance);
      setSize(header);
      break;
    default:
      if (!(isPlainChunk(header) && changeRecords(data, sizeWidth, chance))) {
        changeBytes(data, chance);
      }
      setSize(data);
      setUnfoldedSize(header, data.size() - sizeWidth);
  }
  content = parts.joined();
  return true;
}

}  // namespace

bool mutateBag(Content& content, Chance& chance) {
  return content.size() > magicSize && changeRecords(content, magicSize, chance);
}

}  // namespace orvantis::fuzz
