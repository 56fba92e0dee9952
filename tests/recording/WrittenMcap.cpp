#include <algorithm>
#include <map>
#include <set>

#include "ByteText.h"
#include "Compressors.h"
#include "WrittenRecording.h"

namespace orvantis::testing {
namespace {

const std::string magic = "\x89MCAP0\r\n";

struct Chunk {
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  std::uint64_t place = 0;
  std::uint64_t size = 0;
  std::uint64_t compressedSize = 0;
  std::uint64_t unfoldedSize = 0;
  std::map<std::uint16_t, std::uint64_t> indexes;  // where the index of each channel's messages is
  std::uint64_t indexesSize = 0;
};

class Writer {
 public:
  Writer(const WrittenRecording& recording, const McapForm& form) : recording_(recording), form_(form) {}

  std::string run() {
    bytes_ = magic + mcapRecord(0x01, withLength("ros2") + withLength("orvantis tests"));
    if (!form_.declaresInChunks || form_.messagesInChunk == 0) {
      bytes_ += declarations();
    }
    if (form_.messagesInChunk == 0) {
      for (const WrittenMessage& message : recording_.messages) {
        bytes_ += messageRecord(message);
      }
    }
    for (std::size_t i = 0; form_.messagesInChunk != 0 && i < recording_.messages.size();
         i += form_.messagesInChunk) {
      putChunk(i, std::min(i + form_.messagesInChunk, recording_.messages.size()));
    }
    bytes_ += mcapRecord(0x0F, bytesOf(form_.hasDataCrc ? slowCrc(bytes_) : 0U));
    putClosing();
    return bytes_;
  }

 private:
  // One schema for each type, with numbers from 1; a topic without a type has number 0.
  std::string declarations() const {
    std::string records;
    std::map<std::string, std::uint16_t> schemas;
    for (const WrittenTopic& topic : recording_.topics) {
      if (!topic.type.empty() && schemas.count(topic.type) == 0) {
        const auto id = static_cast<std::uint16_t>(schemas.size() + 1);
        schemas[topic.type] = id;
        records += mcapRecord(
            0x03, bytesOf(id) + withLength(topic.type) + withLength("ros2msg") + withLength("# text"));
      }
    }
    for (std::size_t i = 0; i < recording_.topics.size(); ++i) {
      const WrittenTopic& topic = recording_.topics[i];
      const std::uint16_t schema = topic.type.empty() ? std::uint16_t{0} : schemas[topic.type];
      records += mcapRecord(0x04, bytesOf(static_cast<std::uint16_t>(i)) + bytesOf(schema) +
                                      withLength(topic.name) + withLength(topic.encoding) + withLength(""));
    }
    return records;
  }

  static std::string messageRecord(const WrittenMessage& message) {
    return mcapRecord(0x05, bytesOf(static_cast<std::uint16_t>(message.topic)) + bytesOf(std::uint32_t{3}) +
                                bytesOf(message.logTime) + bytesOf(message.logTime + 5) + message.data);
  }

  std::string compressed(const std::string& records) const {
    if (form_.compression.empty()) {
      return records;
    }
    if (form_.compression.starts_with("lz4")) {
      return lz4Of(records, form_.compression == "lz4 linked");
    }
    return zstdOf(records, false, form_.compression == "zstd");
  }

  void putChunk(std::size_t begin, std::size_t end) {
    std::string records = form_.declaresInChunks ? declarations() : "";
    std::map<std::uint16_t, std::string> entries;
    Chunk chunk;
    chunk.first = recording_.messages[begin].logTime;
    for (std::size_t i = begin; i < end; ++i) {
      const WrittenMessage& message = recording_.messages[i];
      chunk.first = std::min(chunk.first, message.logTime);
      chunk.last = std::max(chunk.last, message.logTime);
      entries[static_cast<std::uint16_t>(message.topic)] +=
          bytesOf(message.logTime) + bytesOf(std::uint64_t{records.size()});
      records += messageRecord(message);
    }
    const std::string folded = compressed(records);
    chunk.place = bytes_.size();
    chunk.compressedSize = folded.size();
    chunk.unfoldedSize = records.size();
    bytes_ += mcapRecord(0x06, bytesOf(chunk.first) + bytesOf(chunk.last) + bytesOf(chunk.unfoldedSize) +
                                   bytesOf(form_.hasChunkCrcs ? slowCrc(records) : 0U) +
                                   withLength(compression()) + bytesOf(chunk.compressedSize) + folded);
    chunk.size = bytes_.size() - chunk.place;
    if (form_.hasMessageIndexes) {
      for (const auto& [channel, entry] : entries) {
        chunk.indexes[channel] = bytes_.size();
        bytes_ += mcapRecord(0x07, bytesOf(channel) + withLength(entry));
      }
    }
    chunk.indexesSize = bytes_.size() - chunk.place - chunk.size;
    chunks_.push_back(chunk);
  }

  std::string compression() const { return form_.compression.substr(0, form_.compression.find(' ')); }

  std::string statistics() const {
    std::map<std::uint16_t, std::uint64_t> counts;
    std::set<std::string> types;
    std::uint64_t first = recording_.messages.empty() ? 0 : recording_.messages.front().logTime;
    std::uint64_t last = 0;
    for (const WrittenMessage& message : recording_.messages) {
      ++counts[static_cast<std::uint16_t>(message.topic)];
      first = std::min(first, message.logTime);
      last = std::max(last, message.logTime);
    }
    for (const WrittenTopic& topic : recording_.topics) {
      types.insert(topic.type);
    }
    std::string entries;
    for (const auto& [channel, count] : counts) {
      entries += bytesOf(channel) + bytesOf(count);
    }
    return bytesOf(std::uint64_t{recording_.messages.size()}) +
           bytesOf(static_cast<std::uint16_t>(types.size())) +
           bytesOf(static_cast<std::uint32_t>(recording_.topics.size())) + bytesOf(0U) + bytesOf(0U) +
           bytesOf(static_cast<std::uint32_t>(chunks_.size())) + bytesOf(first) + bytesOf(last) +
           withLength(entries);
  }

  std::string chunkIndexes() const {
    std::string records;
    for (const Chunk& chunk : chunks_) {
      std::string indexes;
      for (const auto& [channel, place] : chunk.indexes) {
        indexes += bytesOf(channel) + bytesOf(place);
      }
      records += mcapRecord(0x08, bytesOf(chunk.first) + bytesOf(chunk.last) + bytesOf(chunk.place) +
                                      bytesOf(chunk.size) + withLength(indexes) + bytesOf(chunk.indexesSize) +
                                      withLength(compression()) + bytesOf(chunk.compressedSize) +
                                      bytesOf(chunk.unfoldedSize));
    }
    return records;
  }

  void putClosing() {
    std::string summary;
    if (form_.hasStatistics) {
      summary += mcapRecord(0x0B, statistics());
    }
    if (form_.hasSummary) {
      summary += declarations() + chunkIndexes();
    }
    const std::uint64_t begin = summary.empty() ? 0 : bytes_.size();
    // Without its CRC, which covers what stands before it in the footer, too.
    const std::string footer = mcapRecord(0x02, bytesOf(begin) + bytesOf(std::uint64_t{0}) + bytesOf(0U));
    summary += footer.substr(0, footer.size() - 4);
    bytes_ += summary + bytesOf(form_.hasSummaryCrc ? slowCrc(summary) : 0U) + magic;
  }

  const WrittenRecording& recording_;
  const McapForm& form_;
  std::string bytes_;
  std::vector<Chunk> chunks_;
};

}  // namespace

std::uint32_t slowCrc(const std::string& bytes) {
  std::uint32_t crc = 0xFFFFFFFFU;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
    }
  }
  return ~crc;
}

std::string mcapRecord(std::uint8_t opcode, const std::string& content) {
  return bytesOf(opcode) + bytesOf(std::uint64_t{content.size()}) + content;
}

std::string asMcap(const WrittenRecording& recording, const McapForm& form) {
  return Writer(recording, form).run();
}

}  // namespace orvantis::testing
