#include "recording/BagIndex.h"

#include <algorithm>
#include <map>
#include <string>

#include "recording/Cursor.h"
#include "recording/OpenChunk.h"
#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

class Walk {
 public:
  Walk(ByteSource& source, const BagHeader& header) : source_(source), header_(header) {}

  BagIndex run() {
    std::uint64_t place = header_.indexPos;
    while (const std::optional<BagRecord> record = bagRecord(source_, place)) {
      if (!record->isWhole()) {
        throw cutOff(place, "a record of the index", record->size, record->availableSize());
      }
      add(*record, place);
      place += record->size;
    }
    if (numChunks_ != header_.numChunks || numConnections_ != header_.numConnections) {
      throw ReadError(atByte(place), "the recording is cut off: its index has " +
                                         counted(numConnections_, "connection") + " and " +
                                         counted(numChunks_, "chunk") + ", and its header counts " +
                                         std::to_string(header_.numConnections) + " and " +
                                         std::to_string(header_.numChunks));
    }
    for (const auto& [topic, count] : counts_) {
      *index_.topics[topic].messages += count;
    }
    return std::move(index_);
  }

 private:
  void add(const BagRecord& record, std::uint64_t place) {
    switch (record.fields.op()) {
      case BagOp::connection:
        index_.connections.add(record, place, index_.topics);
        index_.topics[index_.topics.topics().size() - 1].messages = 0;
        ++numConnections_;
        break;
      case BagOp::chunkInfo:
        addChunkInfo(record, place);
        break;
      default:
        throw ReadError(atByte(place), "the index has a record that does not belong there");
    }
  }

  // The content of a chunk: the number of messages of each connection.
  void addChunkInfo(const BagRecord& record, std::uint64_t place) {
    Cursor cursor(record.data, place, "the description of a chunk");
    for (auto left = record.fields.number<std::uint32_t>("count"); left != 0; --left) {
      const auto connection = cursor.take<std::uint32_t>();
      const auto count = cursor.take<std::uint32_t>();
      counts_[index_.connections.topicOf(connection, place)] += count;
      index_.sums.messages += count;
    }
    const filter::monitor::Stamp first = record.fields.time("start_time");
    const filter::monitor::Stamp last = record.fields.time("end_time");
    index_.sums.first = numChunks_ == 0 ? first : std::min(index_.sums.first, first);
    index_.sums.last = numChunks_ == 0 ? last : std::max(index_.sums.last, last);
    ++numChunks_;
  }

  ByteSource& source_;
  BagHeader header_;
  std::uint32_t numConnections_ = 0;
  std::uint32_t numChunks_ = 0;
  std::map<std::size_t, std::uint64_t> counts_;  // the messages of each topic
  BagIndex index_;
};

}  // namespace

BagIndex readBagIndex(ByteSource& source, const BagHeader& header) {
  return Walk(source, header).run();
}

}  // namespace orvantis::toolkit
