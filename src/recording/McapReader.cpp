#include "recording/McapReader.h"

#include <algorithm>
#include <string>
#include <utility>

#include "recording/Crc32.h"
#include "recording/Cursor.h"
#include "recording/OpenChunk.h"
#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

constexpr std::size_t dataEndSize = 4;

// Whether the record that ends the data has no CRC of them.
bool isWithoutDataCrc(ByteSource& source, const McapClosing& closing) {
  constexpr std::uint64_t size = McapRecordHeader::size + dataEndSize;
  const auto bytes = source.bytes(closing.begin - std::min(closing.begin, size), size);
  if (bytes.size() < size) {
    return false;
  }
  const McapRecordHeader header(bytes);
  return header.opcode == McapOpcode::dataEnd && header.length == dataEndSize &&
         loadLittleEndian<std::uint32_t>(&bytes[McapRecordHeader::size]) == 0;
}

void checkCrc(std::uint32_t crc, std::uint32_t claimed, std::uint64_t place) {
  if (claimed != 0 && crc != claimed) {
    throw ReadError(atByte(place), "a chunk is damaged: its CRC is " + std::to_string(crc) +
                                       " and should be " + std::to_string(claimed));
  }
}

}  // namespace

McapReader::McapReader(ByteSource& source, Decoders decoders)
    : source_(source), chunks_(std::move(decoders)), closing_(findMcapClosing(source)) {
  if (closing_) {
    topics_ = closing_->topics;
    vocabulary_ = closing_->vocabulary;
    index_ = closing_->index;
    isDataCrcWanted_ = !isWithoutDataCrc(source, *closing_);
  }
  if (isDataCrcWanted_) {
    dataCrc_ = crc32(source.bytes(0, position_));
  }
}

std::optional<RecordedMessage> McapReader::next() {
  while (!isAtEnd_) {
    if (std::optional<RecordedMessage> message = nextInChunk()) {
      return message;
    }
    if (std::optional<RecordedMessage> message = readRecord()) {
      return message;
    }
  }
  return std::nullopt;
}

std::optional<RecordedMessage> McapReader::nextInChunk() {
  while (!chunk_.rest.empty()) {
    const std::span<const std::byte> rest = chunk_.rest;
    const std::uint64_t place = chunk_.place;
    if (rest.size() < McapRecordHeader::size ||
        McapRecordHeader(rest).length > rest.size() - McapRecordHeader::size) {
      if (!chunk_.cut) {
        throw ReadError(atByte(place),
                        "a chunk is damaged: its last record is longer than what is left of it");
      }
      break;
    }
    const McapRecordHeader header(rest);
    const auto content = rest.subspan(McapRecordHeader::size, static_cast<std::size_t>(header.length));
    chunk_.drop(McapRecordHeader::size + content.size());
    if (header.opcode != McapOpcode::message) {
      addDeclaration(header.opcode, content, place);
      continue;
    }
    RecordedMessage message = noted(McapMessageHeader(content, place), place);
    message.data = content.subspan(McapMessageHeader::size);
    return message;
  }
  chunk_.rest = {};
  if (chunk_.cut) {
    throw ReadError(*chunk_.cut);
  }
  return std::nullopt;
}

std::optional<RecordedMessage> McapReader::readRecord() {
  const std::uint64_t place = position_;
  const auto head = source_.bytes(position_, McapRecordHeader::size);
  if (head.empty()) {
    throw ReadError(atByte(place), "the recording is cut off: the record that ends its data is missing");
  }
  if (head.size() < McapRecordHeader::size) {
    throw cutOff(place, "a record", McapRecordHeader::size, head.size());
  }
  const McapRecordHeader header(head);
  if (header.opcode != McapOpcode::dataEnd) {
    addToDataCrc(head);
  }
  position_ += McapRecordHeader::size;
  switch (header.opcode) {
    case McapOpcode::message:
      return readMessage(header.length, place);
    case McapOpcode::chunk:
      openChunk(header.length, place);
      break;
    case McapOpcode::schema:
    case McapOpcode::channel:
      addDeclaration(header.opcode, take(header.length, place, "a declaration"), place);
      break;
    case McapOpcode::dataEnd:
      finish(header.length, place);
      break;
    case McapOpcode::footer:
      throw ReadError(atByte(place), "the footer comes before the record that ends the data");
    default:
      skip(header.length, place, "a record");
  }
  return std::nullopt;
}

RecordedMessage McapReader::readMessage(std::uint64_t length, std::uint64_t place) {
  const auto head = source_.bytes(position_, std::min<std::uint64_t>(length, McapMessageHeader::size));
  if (head.size() < McapMessageHeader::size && head.size() < length) {
    throw cutOff(place, "a message", length, head.size());
  }
  const McapMessageHeader header(head, place);
  std::span<const std::byte> data;
  if (topics_[vocabulary_.topicOf(header.channel, place)].cloud == CloudEncoding::none) {
    skip(length, place, "a message");
  } else {
    data = take(length, place, "a message").subspan(McapMessageHeader::size);
  }
  RecordedMessage message = noted(header, place);
  message.data = data;
  return message;
}

RecordedMessage McapReader::noted(const McapMessageHeader& header, std::uint64_t place) {
  const std::size_t topic = vocabulary_.topicOf(header.channel, place);
  topics_.count(topic, header.logged);
  ++numMessages_;
  return {topic, header.logged, place, {}};
}

void McapReader::addDeclaration(McapOpcode opcode, std::span<const std::byte> content, std::uint64_t place) {
  if (opcode == McapOpcode::schema) {
    vocabulary_.addSchema(content, place);
  } else if (opcode == McapOpcode::channel) {
    vocabulary_.addChannel(content, place, topics_);
  }
}

void McapReader::openChunk(std::uint64_t length, std::uint64_t place) {
  const auto content = source_.bytes(position_, length);
  chunk_ = {};
  if (content.size() < length) {
    chunk_.cut = cutOff(place, "a chunk", length, content.size());
    if (content.size() < McapChunkHeader::leastSize) {
      throw ReadError(*chunk_.cut);
    }
  }
  const McapChunkHeader header(content, place);
  if (header.recordsSize > content.size() - header.size && !chunk_.cut) {
    throw ReadError(atByte(place), "a chunk claims " + counted(header.recordsSize, "byte") +
                                       " of records and has " + std::to_string(content.size() - header.size));
  }
  if (header.compression.empty()) {
    openPlainChunk(header, content, place);
  } else {
    openFoldedChunk(header, content, place);
  }
  position_ += content.size();
}

void McapReader::openPlainChunk(const McapChunkHeader& header, std::span<const std::byte> content,
                                std::uint64_t place) {
  const auto rest = content.subspan(header.size);
  const auto records =
      rest.first(static_cast<std::size_t>(std::min<std::uint64_t>(header.recordsSize, rest.size())));
  if (header.unfoldedSize != header.recordsSize) {
    throw ReadError(atByte(place), "a chunk without compression claims " +
                                       counted(header.recordsSize, "byte") + ", and " +
                                       std::to_string(header.unfoldedSize) + " unfolded");
  }
  if (!chunk_.cut && (header.crc != 0 || isDataCrcWanted_)) {
    // The CRC of the chunk is used for that of all data, so that the bytes are read only once.
    const std::uint32_t crc = crc32(records);
    checkCrc(crc, header.crc, place);
    addToDataCrc(content.first(header.size));
    dataCrc_ = crc32OfBoth(dataCrc_, crc, records.size());
    addToDataCrc(rest.subspan(records.size()));
  }
  chunk_.rest = records;
  chunk_.place = position_ + header.size;
}

void McapReader::openFoldedChunk(const McapChunkHeader& header, std::span<const std::byte> content,
                                 std::uint64_t place) {
  addToDataCrc(content);
  const auto rest = content.subspan(header.size);
  CompressedChunk folded;
  folded.compression = header.compression;
  folded.bytes =
      rest.first(static_cast<std::size_t>(std::min<std::uint64_t>(header.recordsSize, rest.size())));
  folded.unfoldedSize = header.unfoldedSize;
  folded.isCutOff = chunk_.cut.has_value();
  folded.place = place;
  chunk_.rest = chunks_.unfold(folded);
  chunk_.place = place;
  chunk_.isUnfolded = true;
  if (!chunk_.cut && header.crc != 0) {
    checkCrc(crc32(chunk_.rest), header.crc, place);
  }
}

void McapReader::finish(std::uint64_t length, std::uint64_t place) {
  const auto content = source_.bytes(position_, length);
  if (content.size() < length) {
    throw cutOff(place, "the record that ends the data", length, content.size());
  }
  Cursor cursor(content, place, "the record that ends the data");
  const auto claimed = cursor.take<std::uint32_t>();
  position_ += length;
  isAtEnd_ = true;
  if (claimed != 0 && claimed != dataCrc_) {
    throw ReadError(atByte(place), "the data before are damaged somewhere: their CRC is " +
                                       std::to_string(dataCrc_) + " and should be " +
                                       std::to_string(claimed));
  }
  if (!closing_ || closing_->begin != position_) {
    closing_ = readMcapClosing(source_, position_);
  }
  if (closing_->index && closing_->index->messages != numMessages_) {
    throw ReadError(atByte(place), "the recording's index counts " +
                                       counted(closing_->index->messages, "message") +
                                       "; the recording has " + std::to_string(numMessages_));
  }
}

std::span<const std::byte> McapReader::take(std::uint64_t count, std::uint64_t place, const char* what) {
  const auto bytes = source_.bytes(position_, count);
  if (bytes.size() < count) {
    throw cutOff(place, what, count, bytes.size());
  }
  addToDataCrc(bytes);
  position_ += count;
  return bytes;
}

void McapReader::skip(std::uint64_t count, std::uint64_t place, const char* what) {
  const std::optional<std::uint64_t> size = source_.size();
  if (size && !isDataCrcWanted_) {
    if (count > *size - position_) {
      throw cutOff(place, what, count, *size - position_);
    }
    position_ += count;
    return;
  }
  constexpr std::uint64_t slice = 1U << 18U;
  for (std::uint64_t left = count; left != 0;) {
    const auto bytes = source_.bytes(position_, std::min(left, slice));
    addToDataCrc(bytes);
    position_ += bytes.size();
    left -= bytes.size();
    if (bytes.empty()) {
      throw cutOff(place, what, count, count - left);
    }
  }
}

void McapReader::addToDataCrc(std::span<const std::byte> bytes) {
  if (isDataCrcWanted_) {
    dataCrc_ = crc32(bytes, dataCrc_);
  }
}

}  // namespace orvantis::toolkit
