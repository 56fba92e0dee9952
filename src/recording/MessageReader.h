#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "recording/TopicTable.h"

namespace orvantis::toolkit {

/// One message of a recording.
struct RecordedMessage {
  std::size_t topic = 0;            ///< the number of its topic
  filter::monitor::Stamp logged{};  ///< when the recorder received it
  std::uint64_t place = 0;          ///< the byte of its record, or of the compressed chunk that holds it
  std::span<const std::byte> data;  ///< may be empty when the topic does not hold clouds
};

/// The index of a recording.
struct RecordingIndex {
  std::uint64_t messages = 0;
  filter::monitor::Stamp first{};
  filter::monitor::Stamp last{};
};

/// The messages of a recording, in the order of the file. Each derived class reads one format. Reads
/// forwards, one record or one chunk at a time.
class MessageReader {
 public:
  virtual ~MessageReader() = default;

  /// The next message; nothing at the end. Its bytes are valid until the next call.
  /// @throws ReadError when the recording is damaged or cut off; nothing more can be read then
  virtual std::optional<RecordedMessage> next() = 0;

  /// The topics of the index; without an index, those that were read so far.
  const std::vector<Topic>& topics() const { return topics_.topics(); }

  /// Nothing for a recording whose index is missing or damaged.
  const std::optional<RecordingIndex>& index() const { return index_; }

 protected:
  MessageReader() = default;
  MessageReader(const MessageReader&) = default;
  MessageReader& operator=(const MessageReader&) = default;

  TopicTable topics_;
  std::optional<RecordingIndex> index_;
};

}  // namespace orvantis::toolkit
