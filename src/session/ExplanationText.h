#pragma once

#include <string>
#include <vector>

#include "session/BestFrames.h"
#include "session/LineHistory.h"

namespace orvantis::toolkit {

// What `explain` says, in lines for people. With colours, headings are bold.

/// The zones at one frame, below a line that names the frame; empty: there are none.
std::string zonesText(const std::vector<ZoneMoment>& moments, int minPoints, bool isColoured);

/// Each zone at the frame of a recording that came nearest to occupying it.
std::string bestFramesText(const std::vector<ZoneMoment>& moments, int minPoints, bool isColoured);

/// Every track that was seen, with what the line has counted.
std::string tracksText(const std::string& line, const std::vector<TrackStory>& stories, bool isColoured);

/// One track and its sightings at a line.
/// @param stamp of the last objects that were seen
std::string trackText(const std::string& line, filter::monitor::Stamp stamp, const TrackStory& story,
                      const std::vector<StampedSighting>& sightings, bool isColoured);

}  // namespace orvantis::toolkit
