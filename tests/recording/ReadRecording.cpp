#include "ReadRecording.h"

#include "ByteText.h"
#include "FrameFiles.h"
#include "recording/ReadError.h"

namespace orvantis::testing {

ReadCloud valueOf(const toolkit::RecordedCloud& cloud) {
  return {std::string(cloud.topic),   cloud.stamp.count(),    cloud.logged.count(),
          std::string(cloud.frameId), pointsOf(cloud.points), cloud.place};
}

ReadRecording readRecording(toolkit::ByteSource& source, const toolkit::RecordingOptions& options) {
  ReadRecording result;
  try {
    toolkit::RecordingReader reader(source, options);
    try {
      while (const auto cloud = reader.next()) {
        result.clouds.push_back(valueOf(*cloud));
      }
    } catch (const toolkit::ReadError& error) {
      result.refusal = toText(error.place()) + ": " + error.what();
      result.place = error.place().byte;
    }
    result.stampsBack = reader.stampsBack();
    result.topics = reader.topics();
    if (reader.damage()) {
      result.place = reader.damage()->byte;
      result.damage = "byte " + std::to_string(reader.damage()->byte) + ": " + reader.damage()->reason;
    }
  } catch (const toolkit::ReadError& error) {
    result.refusal = toText(error.place()) + ": " + error.what();
    result.place = error.place().byte;
  }
  return result;
}

ReadRecording readRecording(const std::string& bytes, const toolkit::RecordingOptions& options) {
  toolkit::MemorySource source(viewOf(bytes));
  return readRecording(source, options);
}

}  // namespace orvantis::testing
