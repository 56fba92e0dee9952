#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "recording/StampList.h"
#include "recording/TrackReader.h"

namespace orvantis::app {

/// Where the frames of a recording come from.
struct Recording {
  std::vector<std::string> clouds;
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
  std::optional<std::string> cloud;  ///< its path
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

 private:
  static std::deque<toolkit::StampedPath> atRate(const std::vector<std::string>& paths, double rate);
  void readList(const std::string& path);
  void fetch();

  std::optional<toolkit::StampList> list_;   // of clouds still to be read
  std::deque<toolkit::StampedPath> clouds_;  // those to come, as far as they were read
  std::optional<std::size_t> cloudCount_;
  std::optional<toolkit::TrackReader> tracks_;     // until its end
  std::optional<toolkit::TrackFrame> trackFrame_;  // the one to come
};

}  // namespace orvantis::app
