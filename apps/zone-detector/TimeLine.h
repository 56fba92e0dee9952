#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "FrameInput.h"
#include "recording/StampList.h"
#include "recording/TrackReader.h"

namespace orvantis::app {

/// Where the frames of a recording come from.
struct Recording {
  std::vector<std::string> clouds;  ///< files, folders, or - for a list from the standard input
  FrameOptions frames;
  std::optional<double> rate;  ///< of the clouds in Hz; none: 10
  std::string stamps;          ///< a list of clouds and their stamps, in place of `clouds`; empty: none
  std::string tracks;          ///< empty: none
  toolkit::TracksFormat tracksFormat = toolkit::TracksFormat::Csv;

  bool hasClouds() const { return !clouds.empty() || !stamps.empty(); }
  bool hasTracks() const { return !tracks.empty(); }
};

/// What a recording has for one stamp: points, objects or both.
struct Moment {
  filter::monitor::Stamp stamp{0};
  std::optional<InputFrame> frame;  ///< valid until the next moment
  std::optional<std::vector<filter::monitor::TrackedObject>> objects;

  const std::vector<filter::monitor::TrackedObject>* objectsOrNull() const {
    return objects ? &*objects : nullptr;
  }
};

/// Points and tracked objects in the order of their stamps. Nothing is read before it is needed, so that what
/// comes through a pipe is told as it comes.
class TimeLine {
 public:
  /// @throws Failure when the list or the tracks cannot be read or are wrong
  explicit TimeLine(const Recording& recording);

  /// The number of frames of points; nothing when it is not known beforehand.
  std::optional<std::size_t> cloudCount() const { return cloudCount_; }

  /// @return nothing at the end
  /// @throws Failure at a bad row of the list or the tracks
  std::optional<Moment> next();

  /// The frames as they were read so far.
  const FrameInput& input() const { return input_; }
  /// Frames that were left out, because their stamps are not later than that of a frame before.
  std::uint64_t numLate() const { return numLate_; }

 private:
  void readList(const std::string& path);
  void fetchFrame();
  void fetchTracks();
  filter::monitor::Stamp stampOf(const InputFrame& frame);

  std::optional<double> rate_;
  bool isListed_;
  std::uint64_t numFrames_ = 0;              // without stamps of their own
  std::optional<toolkit::StampList> list_;   // from the standard input, to its end
  std::deque<toolkit::StampedPath> listed_;  // those to come, as far as they were read
  FrameInput input_;
  std::optional<std::size_t> cloudCount_;
  std::optional<InputFrame> frame_;  // the one to come, with its stamp
  std::optional<filter::monitor::Stamp> lastFrame_;
  std::uint64_t numLate_ = 0;
  std::optional<toolkit::TrackReader> tracks_;     // until its end
  std::optional<toolkit::TrackFrame> trackFrame_;  // the one to come
};

}  // namespace orvantis::app
