#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "WrittenCloud.h"
#include "recording/RecordingReader.h"

namespace orvantis::testing {

/// A frame of a recording, by value.
struct ReadCloud {
  std::string topic;
  std::int64_t stamp = 0;
  std::int64_t logged = 0;
  std::string frameId;
  std::vector<Point3> points;
  std::uint64_t place = 0;

  bool operator==(const ReadCloud&) const = default;
};

/// What became of a recording.
struct ReadRecording {
  std::vector<ReadCloud> clouds;
  std::string refusal;      ///< "byte 5: reason"
  std::string damage;       ///< likewise
  std::uint64_t place = 0;  ///< the byte of either
  toolkit::StampsBack stampsBack;
  std::vector<toolkit::Topic> topics;
};

ReadCloud valueOf(const toolkit::RecordedCloud& cloud);

ReadRecording readRecording(toolkit::ByteSource& source, const toolkit::RecordingOptions& options = {});
ReadRecording readRecording(const std::string& bytes, const toolkit::RecordingOptions& options = {});

}  // namespace orvantis::testing
