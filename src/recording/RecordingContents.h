#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "files/ByteSource.h"
#include "recording/Decoders.h"
#include "recording/OpenRecording.h"
#include "recording/TopicTable.h"

namespace orvantis::toolkit {

/// Where a recording ends too early, or is damaged, and what is wrong there.
struct Damage {
  std::uint64_t byte = 0;  ///< of the file; of what it unfolds to, where it is compressed as a whole
  std::string reason;
};

/// What a topic holds in all.
struct TopicContents {
  Topic topic;
  std::uint64_t messages = 0;
  /// Messages a second, from the first to the last; nothing for less than two, or no time between them. Where
  /// only the index was read, over the time of the whole recording.
  std::optional<double> rate;
};

/// What a recording holds.
struct RecordingContents {
  RecordingKind kind{};
  std::vector<TopicContents> topics;
  std::uint64_t messages = 0;
  filter::monitor::Stamp first{};  ///< log time of the first and the last message, where there is one
  filter::monitor::Stamp last{};
  bool isFromIndex = false;
  std::optional<Damage> damage;  ///< known only when all was read
};

/// Whether an index says of every message which topic it belongs to. @throws nothing
bool isIndexed(const MessageReader& reader);

/// From the index; without one, of what was read so far. @throws std::bad_alloc
RecordingContents contentsOf(const MessageReader& reader);

/// From the index; where there is none, or it does not count the messages of each topic, all is read.
/// @throws ReadError when the bytes are not a recording that can be read
RecordingContents readContents(ByteSource& source, const Decoders& decoders);

/// The topics in words, at most 20 of them: "/points (sensor_msgs/msg/PointCloud2, 12 messages, 10 Hz), ...".
/// @throws std::bad_alloc
std::string listOf(const std::vector<TopicContents>& topics);

}  // namespace orvantis::toolkit
