#pragma once

#include <string>
#include <vector>

#include "session/BestFrames.h"
#include "session/LineHistory.h"

namespace orvantis::app {

struct Console;

/// Prints the zones at one frame, below a heading that names the frame.
void printZones(const std::vector<toolkit::ZoneMoment>& moments, int minPoints, const Console& console);

/// Prints each zone at the frame of a recording that came nearest to occupying it.
void printBestFrames(const std::vector<toolkit::ZoneMoment>& moments, int minPoints, const Console& console);

/// Prints every track that was seen, with what the line has counted.
void printTracks(const std::string& line, const std::vector<toolkit::TrackStory>& stories,
                 const Console& console);

/// Prints one track and its sightings at a line.
/// @param stamp of the last objects that were seen
void printTrack(const std::string& line, filter::monitor::Stamp stamp, const toolkit::TrackStory& story,
                const std::vector<toolkit::StampedSighting>& sightings, const Console& console);

}  // namespace orvantis::app
