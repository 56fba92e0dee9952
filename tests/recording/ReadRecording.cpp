#include "ReadRecording.h"

#include <cstring>
#include <variant>

#include "ByteText.h"
#include "recording/ReadError.h"

namespace orvantis::testing {

std::vector<Point3> valuesOf(const toolkit::Points& points) {
  std::vector<Point3> result;
  std::visit(
      [&]<typename Real>(const filter::classify::PointsView<Real>& view) {
        const auto value = [&](const void* first, std::size_t i) {
          Real number{};
          std::memcpy(&number, static_cast<const char*>(first) + i * view.stride, sizeof(Real));
          return static_cast<double>(number);
        };
        for (std::size_t i = 0; i < view.size; ++i) {
          result.push_back({value(view.x, i), value(view.y, i), value(view.z, i)});
        }
      },
      points);
  return result;
}

ReadCloud valueOf(const toolkit::RecordedCloud& cloud) {
  return {std::string(cloud.topic),   cloud.stamp.count(),    cloud.logged.count(),
          std::string(cloud.frameId), valuesOf(cloud.points), cloud.place};
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
