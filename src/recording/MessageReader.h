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
  std::size_t topic = 0;            ///< its number among the topics
  filter::monitor::Stamp logged{};  ///< when the recorder took it
  std::uint64_t place = 0;          ///< the byte of its record, or of the compressed chunk that holds it
  std::span<const std::byte> data;  ///< may be empty where the topic holds no clouds
};

/// What the index of a recording says.
struct RecordingIndex {
  std::uint64_t messages = 0;
  filter::monitor::Stamp first{};
  filter::monitor::Stamp last{};
};

/// The messages of a recording of one kind, in the order of the file. Reads forwards, a record or a chunk at
/// a time.
class MessageReader {
 public:
  virtual ~MessageReader() = default;

  /// The next message; nothing at the end. Its bytes are valid until the next call.
  /// @throws ReadError where the recording is damaged or cut off: nothing more can be read then
  virtual std::optional<RecordedMessage> next() = 0;

  /// From the index where there is one, else as far as the recording was read.
  const std::vector<Topic>& topics() const { return topics_.topics(); }

  /// Nothing for a recording without a sound index.
  const std::optional<RecordingIndex>& index() const { return index_; }

 protected:
  MessageReader() = default;
  MessageReader(const MessageReader&) = default;
  MessageReader& operator=(const MessageReader&) = default;

  TopicTable topics_;
  std::optional<RecordingIndex> index_;
};

}  // namespace orvantis::toolkit
