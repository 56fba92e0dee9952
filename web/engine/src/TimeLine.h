#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>
#include <filter/monitor/TrackedObject.h>

#include "CloudStream.h"
#include "recording/StampList.h"
#include "recording/TrackReader.h"

namespace orvantis::engine {

/// Where the frames of a recording come from.
struct RecordingFiles {
  std::vector<NamedSource> clouds;  ///< where there is a list, those that it names are taken of them
  std::optional<NamedSource> stamps;
  std::optional<NamedSource> tracks;
};

struct RecordingOptions {
  FrameOptions frames;
  std::optional<double> rate;  ///< of single frames in Hz; none: 10
  toolkit::TracksFormat tracksFormat = toolkit::TracksFormat::Csv;
};

/// What a recording has for one stamp: points, objects or both.
struct Moment {
  filter::monitor::Stamp stamp{0};
  std::optional<CloudFrame> frame;  ///< valid until the next moment
  std::optional<std::vector<filter::monitor::TrackedObject>> objects;

  const std::vector<filter::monitor::TrackedObject>* objectsOrNull() const {
    return objects ? &*objects : nullptr;
  }
};

/// Points and tracked objects in the order of their stamps. Nothing is read before it is needed.
class TimeLine {
 public:
  /// @throws Failure when the list or the tracks cannot be read or are wrong
  TimeLine(const RecordingFiles& files, const RecordingOptions& options);

  /// @return nothing at the end
  /// @throws Failure at a bad row, a frame that cannot be read, or frames whose stamps cannot be told
  std::optional<Moment> next();

  const CloudStream& clouds() const { return clouds_; }
  /// Of the frame of the moment that `next` gave last; see CloudStream.
  std::vector<float> intensities() { return clouds_.intensities(); }
  /// Frames that were left out, because their stamps are not later than that of a frame before.
  std::uint64_t numLate() const { return numLate_; }

 private:
  void fetchFrame();
  void fetchTracks();
  filter::monitor::Stamp stampOf(const CloudFrame& frame);

  std::optional<double> rate_;
  std::vector<toolkit::StampedPath> listed_;
  bool isListed_;
  std::uint64_t numFrames_ = 0;  // without stamps of their own
  CloudStream clouds_;
  std::optional<CloudFrame> frame_;  // the one to come, with its stamp
  std::optional<filter::monitor::Stamp> lastFrame_;
  std::uint64_t numLate_ = 0;
  std::optional<toolkit::TrackReader> tracks_;     // until its end
  std::optional<toolkit::TrackFrame> trackFrame_;  // the one to come
};

}  // namespace orvantis::engine
