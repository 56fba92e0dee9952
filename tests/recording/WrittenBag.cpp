#include <algorithm>
#include <map>

#include "ByteText.h"
#include "Compressors.h"
#include "WrittenRecording.h"

namespace orvantis::testing {
namespace {

std::string field(const std::string& name, const std::string& value) {
  return name + "=" + value;
}
std::string op(std::uint8_t number) {
  return field("op", bytesOf(number));
}
std::string number(const std::string& name, std::uint64_t value) {
  return field(name, bytesOf(static_cast<std::uint32_t>(value)));
}
std::string time(const std::string& name, std::uint64_t nanoseconds) {
  return field(name, bytesOf(static_cast<std::uint32_t>(nanoseconds / 1'000'000'000)) +
                         bytesOf(static_cast<std::uint32_t>(nanoseconds % 1'000'000'000)));
}

struct Chunk {
  std::uint64_t place = 0;
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  std::map<std::size_t, std::uint32_t> counts;
};

class Writer {
 public:
  Writer(const WrittenRecording& recording, const BagForm& form) : recording_(recording), form_(form) {}

  std::string run() {
    std::string chunks;
    for (std::size_t i = 0; i < recording_.messages.size(); i += form_.messagesInChunk) {
      putChunk(chunks, i, std::min(i + form_.messagesInChunk, recording_.messages.size()));
    }
    std::string bytes = begin(form_.isClosed ? headerSize_ + chunks.size() : 0) + chunks;
    if (form_.isClosed) {
      for (const auto& [connection, isKnown] : declared_) {
        bytes += declaration(connection);
      }
      for (const Chunk& chunk : chunks_) {
        bytes += chunkInfo(chunk);
      }
    }
    return bytes;
  }

 private:
  // The first record is filled up with blanks, so that it can be written again when the bag is closed.
  std::string begin(std::uint64_t indexPos) const {
    const auto numConnections = form_.isClosed ? declared_.size() : 0;
    const auto numChunks = form_.isClosed ? chunks_.size() : 0;
    const std::vector<std::string> fields = {op(3), field("index_pos", bytesOf(indexPos)),
                                             number("conn_count", numConnections),
                                             number("chunk_count", numChunks)};
    const std::size_t size = bagRecord(fields, "").size();
    return "#ROSBAG V2.0\n" + bagRecord(fields, std::string(form_.headerSize - size, ' '));
  }

  std::string declaration(std::size_t connection) const {
    const WrittenTopic& topic = recording_.topics[connection];
    const std::string data = withLength(field("topic", topic.name)) + withLength(field("type", topic.type)) +
                             withLength(field("md5sum", "*")) +
                             withLength(field("message_definition", "a=b"));
    return bagRecord({op(7), number("conn", connection), field("topic", topic.name)}, data);
  }

  void putChunk(std::string& bytes, std::size_t begin, std::size_t end) {
    Chunk chunk;
    chunk.place = headerSize_ + bytes.size();
    chunk.first = recording_.messages[begin].logTime;
    std::string records;
    std::map<std::size_t, std::string> indexes;
    for (std::size_t i = begin; i < end; ++i) {
      const WrittenMessage& message = recording_.messages[i];
      if (declared_.try_emplace(message.topic, true).second) {
        records += declaration(message.topic);
      }
      chunk.first = std::min(chunk.first, message.logTime);
      chunk.last = std::max(chunk.last, message.logTime);
      ++chunk.counts[message.topic];
      indexes[message.topic] +=
          time("", message.logTime).substr(1) + bytesOf(static_cast<std::uint32_t>(records.size()));
      records +=
          bagRecord({op(2), number("conn", message.topic), time("time", message.logTime)}, message.data);
    }
    const std::string folded = form_.compression == "bz2"   ? bzip2Of(records)
                               : form_.compression == "lz4" ? lz4Of(records, false, true)
                                                            : records;
    bytes +=
        bagRecord({op(5), field("compression", form_.compression), number("size", records.size())}, folded);
    for (const auto& [connection, entries] : indexes) {
      bytes += bagRecord(
          {op(4), number("ver", 1), number("conn", connection), number("count", chunk.counts[connection])},
          entries);
    }
    chunks_.push_back(chunk);
  }

  static std::string chunkInfo(const Chunk& chunk) {
    std::string data;
    for (const auto& [connection, count] : chunk.counts) {
      data += bytesOf(static_cast<std::uint32_t>(connection)) + bytesOf(count);
    }
    return bagRecord(
        {op(6), number("ver", 1), field("chunk_pos", bytesOf(chunk.place)), time("start_time", chunk.first),
         time("end_time", chunk.last), number("count", chunk.counts.size())},
        data);
  }

  const WrittenRecording& recording_;
  const BagForm& form_;
  std::size_t headerSize_ = 13 + form_.headerSize;
  std::map<std::size_t, bool> declared_;
  std::vector<Chunk> chunks_;
};

}  // namespace

std::string bagRecord(const std::vector<std::string>& fields, const std::string& data) {
  std::string header;
  for (const std::string& text : fields) {
    header += withLength(text);
  }
  return withLength(header) + withLength(data);
}

std::string asBag(const WrittenRecording& recording, const BagForm& form) {
  return Writer(recording, form).run();
}

}  // namespace orvantis::testing
