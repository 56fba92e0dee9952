#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "files/ByteSource.h"
#include "recording/Decoders.h"
#include "recording/OpenRecording.h"
#include "recording/ReadError.h"
#include "recording/TopicTable.h"

namespace orvantis::toolkit {

/// The place where a recording ends too early or is damaged, and what is wrong there.
struct Damage {
  std::uint64_t byte = 0;  ///< of the file; if it is compressed as a whole, of what it unfolds to
  std::string reason;
};

/// What an error says about the rest of a recording.
Damage damageOf(const ReadError& error, const OpenRecording& opened);

/// "byte 4096: the recording is cut off: a message needs 60 bytes and has 12; what comes before it was read".
std::string toText(const Damage& damage);

/// The content of a topic.
struct TopicContents {
  Topic topic;
  std::uint64_t messages = 0;
  /// From the first to the last message. If only the index was read, over the time of the whole recording.
  std::optional<double> rate;
};

/// The content of a recording.
struct RecordingContents {
  RecordingKind kind{};
  std::vector<TopicContents> topics;
  std::uint64_t messages = 0;
  filter::monitor::Stamp first{};  ///< log time of the first and the last message, if there is one
  filter::monitor::Stamp last{};
  bool isFromIndex = false;
  std::optional<Damage> damage;  ///< only known when everything was read
};

/// Messages per second; nothing for fewer than two messages, or no time between the first and the last.
std::optional<double> rateOf(std::uint64_t messages, filter::monitor::Stamp first,
                             filter::monitor::Stamp last);

/// Whether the index tells of every message which topic it belongs to. Throws nothing.
bool isIndexed(const MessageReader& reader);

/// The content by the index; without an index, the content that was read so far. @throws std::bad_alloc
RecordingContents contentsOf(const MessageReader& reader);

/// The content by the index. Without an index, or when it does not count the messages of each topic, the
/// whole recording is read.
/// @throws ReadError when the bytes are not a recording that can be read
RecordingContents readContents(ByteSource& source, const Decoders& decoders);

/// The topics in words, at most 20 of them: "/points (sensor_msgs/msg/PointCloud2, 12 messages, 10 Hz), ...".
/// @throws std::bad_alloc
std::string listOf(const std::vector<TopicContents>& topics);

}  // namespace orvantis::toolkit
