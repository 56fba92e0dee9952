#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <filter/monitor/SensorPoints.h>
#include <filter/monitor/Stamp.h>

#include "recording/PointFilter.h"
#include "recording/Points.h"

namespace orvantis::toolkit {

/// The part of a frame that comes from one sensor.
struct SensorFrame {
  std::string sensor;
  std::string file;
  std::string topic;  ///< of a recording
  filter::monitor::Stamp stamp{0};
  Points points;
};

/// A frame of points.
struct InputFrame {
  std::string file;                             ///< as the user gave it
  std::string topic;                            ///< of a recording; empty: the file is one frame
  std::optional<filter::monitor::Stamp> stamp;  ///< of a recording
  Points points;  ///< in the frame of the site; valid until the next frame is read
  std::vector<Column> columns;
  /// How many of them were at exactly (0, 0, 0) for their sensor. Nothing: nobody has looked; the points are
  /// as the sensor gave them.
  std::optional<std::uint64_t> atOrigin;
  DroppedPoints dropped;
  std::vector<SensorFrame>
      sensors;  ///< the sensors of the points, in the order of the points; empty: not known
};

/// The points of a frame by sensor, for a monitor.
std::vector<filter::monitor::SensorPoints> pointsBySensor(const InputFrame& frame);

/// Gives a single frame its stamp of a list.
/// @throws Failure for a frame of a recording, which has one of its own
void giveStamp(InputFrame& frame, filter::monitor::Stamp stamp);

/// The frames of an input, one after the other.
class FrameSource {
 public:
  FrameSource() = default;
  FrameSource(const FrameSource&) = delete;
  FrameSource& operator=(const FrameSource&) = delete;
  virtual ~FrameSource() = default;

  /// The next frame; nothing at the end.
  /// @throws Failure with the path, the place and the reason
  virtual std::optional<InputFrame> next() = 0;

  /// The size of all files that were opened so far.
  virtual std::uint64_t bytes() const = 0;
  /// The number of frames; nothing when it is not known in advance.
  virtual std::optional<std::size_t> frameCount() const = 0;
  /// How many frames were left out because their stamps are not later than that of the frame before.
  virtual std::uint64_t numLate() const { return 0; }

  /// Texts about recordings that could not be read to their end, and other things that the user should know.
  virtual std::vector<std::string> warnings() const = 0;
  /// Whether a recording could not be read to its end.
  virtual bool isDamaged() const = 0;
};

}  // namespace orvantis::toolkit
