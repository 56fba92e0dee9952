#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "FrameClock.h"
#include "Recording.h"
#include "recording/StampList.h"
#include "recording/TrackReader.h"

namespace orvantis::app {

class FrameInput;

/// The points, the objects or both that a recording has for one stamp.
struct Moment {
  filter::monitor::Stamp stamp{0};
  std::optional<InputFrame> frame;  ///< valid until the next moment
  std::optional<std::vector<filter::monitor::TrackedObject>> objects;
  std::vector<toolkit::TrackBox> boxes;  ///< of the objects

  const std::vector<filter::monitor::TrackedObject>* objectsOrNull() const {
    return objects ? &*objects : nullptr;
  }
};

/// Points and tracked objects in the order of their stamps. It does not read ahead, so that input from a pipe
/// gives output as soon as it comes.
class TimeLine {
 public:
  /// @throws Failure when the list, the sensors or the tracks cannot be read or are wrong
  TimeLine(const Recording& recording, const toolkit::Configuration& configuration, const Console& console);

  /// The number of frames of points; nothing when it is not known in advance.
  std::optional<std::size_t> cloudCount() const { return cloudCount_; }

  /// The next moment; nothing at the end.
  /// @throws Failure at a bad row of the list or the tracks
  std::optional<Moment> next();

  /// The source of the frames.
  const FrameSource& input() const { return *input_; }
  /// How many frames were left out because their stamps are not later than that of the frame before.
  std::uint64_t numLate() const { return numLate_ + input_->numLate(); }

 private:
  void readList(const std::string& path);
  void fetchFrame();
  void fetchTracks();
  filter::monitor::Stamp stampOf(const InputFrame& frame);

  FrameClock clock_;
  bool isListed_;
  std::optional<toolkit::StampList> list_;   // on the standard input, until its end
  std::deque<toolkit::StampedPath> listed_;  // the next ones, as far as they were read
  std::unique_ptr<FrameSource> input_;
  FrameInput* files_ = nullptr;  // the same object as `input_` if the frames are listed, else null
  std::optional<std::size_t> cloudCount_;
  std::optional<InputFrame> frame_;  // the next frame, with its stamp
  std::optional<filter::monitor::Stamp> lastFrame_;
  std::uint64_t numLate_ = 0;
  std::optional<toolkit::TrackReader> tracks_;     // empty after its end
  std::optional<toolkit::TrackFrame> trackFrame_;  // the next frame of objects
};

}  // namespace orvantis::app
