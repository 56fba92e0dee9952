#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "document/Configuration.h"
#include "recording/FrameOptions.h"
#include "recording/FrameSource.h"
#include "recording/TimeLine.h"
#include "recording/TrackReader.h"

namespace orvantis::toolkit {

/// Where the frames of a recording come from.
struct Recording {
  std::vector<std::string> clouds;  ///< files, folders, or - for a list on the standard input
  FrameOptions frames;
  std::string sensors;  ///< a list of sensors, whose frames are taken together; empty: none
  filter::monitor::Duration window = std::chrono::milliseconds(50);  ///< by how much their stamps may differ
  std::optional<double> rate;                                        ///< of the clouds in Hz; empty: 10
  std::string stamps;  ///< a list of clouds and their stamps, in place of `clouds`; empty: none
  std::string tracks;  ///< the file of tracked objects; empty when there is none
  TracksFormat tracksFormat = TracksFormat::Csv;

  bool hasClouds() const { return !clouds.empty() || !stamps.empty() || !sensors.empty(); }
  bool hasTracks() const { return !tracks.empty(); }
};

/// Who is told, while a recording is opened, what the user should know.
struct OpeningWarnings {
  std::function<void(const std::string&)> finding;  ///< in a list of sensors, with its place
  std::function<void(const std::string&)> warning;
};

/// Opens the frames of the clouds or of the sensors. Warns of zones that are bound to a sensor which is not
/// in the list.
/// @throws Failure when the sensors cannot be read or are wrong
std::unique_ptr<FrameSource> openFrames(const Recording& recording, const Configuration& configuration,
                                        const OpeningWarnings& warnings);

/// Opens the frames and the tracks.
/// @throws Failure when the list, the sensors or the tracks cannot be read or are wrong
TimeLine openTimeLine(const Recording& recording, const Configuration& configuration,
                      const OpeningWarnings& warnings);

}  // namespace orvantis::toolkit
