#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orvantis::testing {

/// What a recording is to hold, and how it is to be written. Written from the descriptions of the formats,
/// apart from what reads them.
struct WrittenTopic {
  std::string name;
  std::string type = "sensor_msgs/msg/PointCloud2";
  std::string encoding = "cdr";
};

struct WrittenMessage {
  std::size_t topic = 0;
  std::uint64_t logTime = 0;  ///< nanoseconds
  std::string data;
};

struct WrittenRecording {
  std::vector<WrittenTopic> topics;
  std::vector<WrittenMessage> messages;
};

struct McapForm {
  std::size_t messagesInChunk = 0;  ///< 0: no chunks
  std::string compression;          ///< "", "lz4", "lz4 linked", "zstd", "zstd without size"
  bool hasChunkCrcs = true;
  bool hasDataCrc = true;
  bool hasMessageIndexes = true;
  bool hasSummary = true;  ///< schemas, channels, chunk indexes
  bool hasStatistics = true;
  bool hasSummaryCrc = true;
  bool declaresInChunks = false;  ///< schemas and channels inside the chunks, in each again
};
std::string asMcap(const WrittenRecording& recording, const McapForm& form = {});

struct BagForm {
  std::size_t messagesInChunk = 2;
  std::string compression = "none";  ///< "none", "bz2", "lz4"
  bool isClosed = true;              ///< has an index
  std::size_t headerSize = 4096;     ///< what the first record is filled up to
};
std::string asBag(const WrittenRecording& recording, const BagForm& form = {});

/// The CRC-32 of MCAP, a bit at a time.
std::uint32_t slowCrc(const std::string& bytes);

/// A record of an MCAP file.
std::string mcapRecord(std::uint8_t opcode, const std::string& content);

/// A record of a bag: a header of fields, each "name=value", and data.
std::string bagRecord(const std::vector<std::string>& fields, const std::string& data);

}  // namespace orvantis::testing
