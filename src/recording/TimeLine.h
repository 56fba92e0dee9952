#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <filter/monitor/Stamp.h>
#include <filter/monitor/TrackedObject.h>

#include "recording/FrameClock.h"
#include "recording/FrameSource.h"
#include "recording/TrackReader.h"

namespace orvantis::toolkit {

/// The points, the objects or both that a recording has for one stamp.
struct Moment {
  filter::monitor::Stamp stamp{0};
  std::optional<InputFrame> frame;  ///< valid until the next moment
  std::optional<std::vector<filter::monitor::TrackedObject>> objects;
  std::vector<TrackBox> boxes;  ///< of the objects

  const std::vector<filter::monitor::TrackedObject>* objectsOrNull() const {
    return objects ? &*objects : nullptr;
  }
};

/// Points and tracked objects in the order of their stamps. It does not read ahead, so that input from a pipe
/// gives output as soon as it comes.
class TimeLine {
 public:
  /// @param clock gives stamps to frames that have none of their own
  /// @param tracks null: there are none
  TimeLine(std::unique_ptr<FrameSource> input, FrameClock clock, std::unique_ptr<TrackReader> tracks);

  /// The number of frames of points; nothing when it is not known in advance.
  std::optional<std::size_t> cloudCount() const { return cloudCount_; }

  /// The next moment; nothing at the end.
  /// @throws Failure at a frame that cannot be read, and at a bad row of the tracks
  std::optional<Moment> next();

  /// The source of the frames.
  const FrameSource& input() const { return *input_; }
  /// How many frames were left out because their stamps are not later than that of the frame before.
  std::uint64_t numLate() const { return numLate_ + input_->numLate(); }

 private:
  void fetchFrame();
  void fetchTracks();

  std::unique_ptr<FrameSource> input_;
  FrameClock clock_;
  std::optional<std::size_t> cloudCount_;
  std::optional<InputFrame> frame_;  // the next frame, with its stamp
  std::optional<filter::monitor::Stamp> lastFrame_;
  std::uint64_t numLate_ = 0;
  std::unique_ptr<TrackReader> tracks_;   // null after its end
  std::optional<TrackFrame> trackFrame_;  // the next frame of objects
};

}  // namespace orvantis::toolkit
