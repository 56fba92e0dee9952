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

/// Points and tracked objects in the order of their stamps.
class TimeLine {
 public:
  /// @throws Failure when the list or the tracks cannot be read or are wrong
  explicit TimeLine(const Recording& recording);

  std::size_t cloudCount() const { return cloudCount_; }

  /// @return nothing at the end
  /// @throws Failure at a bad row of the tracks
  std::optional<Moment> next();

 private:
  static std::deque<toolkit::StampedPath> atRate(const std::vector<std::string>& paths, double rate);
  static std::deque<toolkit::StampedPath> fromList(const std::string& path);

  std::deque<toolkit::StampedPath> clouds_;  // those to come
  std::size_t cloudCount_;
  std::optional<toolkit::TrackReader> tracks_;
  std::optional<toolkit::TrackFrame> trackFrame_;  // the one to come
};

}  // namespace orvantis::app
