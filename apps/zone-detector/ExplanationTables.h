#pragma once

#include <string>
#include <vector>

#include "session/BestFrames.h"
#include "session/LineHistory.h"

namespace orvantis::app {

struct Console;

/// Zones at one frame, under a heading that names it.
void printZones(const std::vector<toolkit::ZoneMoment>& moments, int minPoints, const Console& console);

/// Zones, each at the frame of a recording that came nearest to occupying it.
void printBestFrames(const std::vector<toolkit::ZoneMoment>& moments, int minPoints, const Console& console);

/// Every track that was seen while a line counted.
void printTracks(const std::string& line, const std::vector<toolkit::TrackStory>& stories,
                 const Console& console);

/// One track and its sightings beside a line.
/// @param stamp of the last objects that were seen
void printTrack(const std::string& line, filter::monitor::Stamp stamp, const toolkit::TrackStory& story,
                const std::vector<toolkit::StampedSighting>& sightings, const Console& console);

}  // namespace orvantis::app
