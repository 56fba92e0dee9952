#include "recording/BagFile.h"

#include <string>

#include "recording/Bytes.h"
#include "recording/OpenChunk.h"
#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {

std::optional<BagRecord> bagRecordHead(ByteSource& source, std::uint64_t place) {
  constexpr std::size_t lengthSize = sizeof(std::uint32_t);
  const auto length = source.bytes(place, lengthSize);
  if (length.empty()) {
    return std::nullopt;
  }
  if (length.size() < lengthSize) {
    throw cutOff(place, "a record", 2 * lengthSize, length.size());
  }
  const std::uint64_t size = 2 * lengthSize + std::uint64_t{loadLittleEndian<std::uint32_t>(length.data())};
  const auto head = source.bytes(place, size);
  if (head.size() < size) {
    throw cutOff(place, "a record", size, head.size());
  }
  return BagRecord::at(head, place);
}

std::optional<BagRecord> bagRecord(ByteSource& source, std::uint64_t place) {
  const std::optional<BagRecord> head = bagRecordHead(source, place);
  return head ? BagRecord::at(source.bytes(place, head->size), place) : std::nullopt;
}

BagHeader readBagHeader(ByteSource& source) {
  const std::uint64_t place = bagMagic.size();
  const std::optional<BagRecord> record = bagRecord(source, place);
  if (!record || record->fields.op() != BagOp::bagHeader) {
    throw ReadError(atByte(place), "the header of the bag is missing");
  }
  const std::optional<std::string_view> encryptor = record->fields.text("encryptor");
  if (encryptor && !encryptor->empty()) {
    throw ReadError(atByte(place), "the bag is encrypted by " + printable(*encryptor));
  }
  if (!record->isWhole()) {
    throw cutOff(place, "the header of the bag", record->size, record->availableSize());
  }
  BagHeader header;
  header.end = place + record->size;
  header.indexPos = record->fields.number<std::uint64_t>("index_pos");
  header.numConnections = record->fields.number<std::uint32_t>("conn_count");
  header.numChunks = record->fields.number<std::uint32_t>("chunk_count");
  return header;
}

}  // namespace orvantis::toolkit
