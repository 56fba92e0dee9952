#include "recording/McapClosing.h"

#include <algorithm>
#include <map>
#include <string>

#include "recording/Crc32.h"
#include "recording/Cursor.h"
#include "recording/OpenChunk.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

constexpr std::size_t footerSize = 20;

bool isMagic(std::span<const std::byte> bytes) {
  return std::equal(
      bytes.begin(), bytes.end(), mcapMagic.begin(), mcapMagic.end(),
      [](std::byte byte, std::uint8_t magic) { return std::to_integer<std::uint8_t>(byte) == magic; });
}

// Reads the records one after the other, and computes their CRC.
class Walk {
 public:
  Walk(ByteSource& source, std::uint64_t begin) : source_(source), position_(begin) {
    closing_.begin = begin;
  }

  McapClosing run() {
    while (!isAtEnd_) {
      readRecord();
    }
    if (!isMagic(source_.bytes(position_, mcapMagic.size()))) {
      throw ReadError(atByte(position_),
                      "the recording is cut off: the bytes that end an MCAP file are missing");
    }
    source_.bytes(position_ + mcapMagic.size(), 1);  // a compressed source whose end is missing throws here
    countMessages();
    return std::move(closing_);
  }

 private:
  std::span<const std::byte> take(std::uint64_t count, const char* what) {
    const std::span<const std::byte> bytes = source_.bytes(position_, count);
    if (bytes.size() < count) {
      throw cutOff(position_, what, count, bytes.size());
    }
    position_ += count;
    return bytes;
  }

  void readRecord() {
    const std::uint64_t place = position_;
    const auto head = take(McapRecordHeader::size, "a record after the data");
    const McapRecordHeader header(head);
    crc_ = crc32(head, crc_);
    const auto content = take(header.length, "a record after the data");
    if (header.opcode == McapOpcode::footer) {
      readFooter(content, place);
      isAtEnd_ = true;
      return;
    }
    crc_ = crc32(content, crc_);
    if (header.opcode == McapOpcode::schema) {
      closing_.vocabulary.addSchema(content, place);
    } else if (header.opcode == McapOpcode::channel) {
      closing_.vocabulary.addChannel(content, place, closing_.topics);
    } else if (header.opcode == McapOpcode::statistics) {
      readStatistics(content, place);
    }
  }

  void readFooter(std::span<const std::byte> content, std::uint64_t place) {
    Cursor cursor(content, place, "the footer");
    const auto summary = cursor.take<std::uint64_t>();
    cursor.take<std::uint64_t>();
    crc_ = crc32(content.first(cursor.position()), crc_);
    const auto claimed = cursor.take<std::uint32_t>();
    if (summary != 0 && summary != closing_.begin) {
      throw ReadError(atByte(place), "the footer says that the summary begins at byte " +
                                         std::to_string(summary) + "; it begins at byte " +
                                         std::to_string(closing_.begin));
    }
    if (claimed != 0 && claimed != crc_) {
      throw ReadError(atByte(closing_.begin), "the summary is damaged: its CRC is " + std::to_string(crc_) +
                                                  " and should be " + std::to_string(claimed));
    }
  }

  void readStatistics(std::span<const std::byte> content, std::uint64_t place) {
    Cursor cursor(content, place, "the record of statistics");
    RecordingIndex index;
    index.messages = cursor.take<std::uint64_t>();
    cursor.take(sizeof(std::uint16_t) + 4 * sizeof(std::uint32_t));  // the numbers of other kinds of records
    index.first = mcapTime(cursor.take<std::uint64_t>(), place);
    index.last = mcapTime(cursor.take<std::uint64_t>(), place);
    Cursor counts(cursor.take(cursor.take<std::uint32_t>()), place, "the record of statistics");
    while (counts.remaining() != 0) {
      const auto channel = counts.take<std::uint16_t>();
      counts_[channel] = counts.take<std::uint64_t>();
    }
    closing_.index = index;
  }

  // Called last, because channels may follow the statistics, or be missing.
  void countMessages() {
    for (const auto& [channel, count] : counts_) {
      if (const std::optional<std::size_t> topic = closing_.vocabulary.find(channel)) {
        std::optional<std::uint64_t>& messages = closing_.topics[*topic].messages;
        messages = messages.value_or(0) + count;
      }
    }
  }

  ByteSource& source_;
  std::uint64_t position_;
  std::uint32_t crc_ = 0;
  bool isAtEnd_ = false;
  std::map<std::uint16_t, std::uint64_t> counts_;
  McapClosing closing_;
};

}  // namespace

McapClosing readMcapClosing(ByteSource& source, std::uint64_t begin) {
  return Walk(source, begin).run();
}

std::optional<McapClosing> findMcapClosing(ByteSource& source) {
  constexpr std::uint64_t footerRecord = McapRecordHeader::size + footerSize;
  constexpr std::uint64_t least = footerRecord + mcapMagic.size();
  const std::optional<std::uint64_t> size = source.size();
  if (!size || *size < least) {
    return std::nullopt;
  }
  try {
    const std::uint64_t footer = *size - least;
    Cursor cursor(source.bytes(footer, footerRecord), footer, "the footer");
    const McapRecordHeader header(cursor.take(McapRecordHeader::size));
    if (header.opcode != McapOpcode::footer || header.length != footerSize) {
      return std::nullopt;
    }
    const auto summary = cursor.take<std::uint64_t>();
    return readMcapClosing(source, summary == 0 ? footer : summary);
  } catch (const ReadError&) {
    return std::nullopt;  // the data are read without it, and the closing is read again after them
  }
}

}  // namespace orvantis::toolkit
