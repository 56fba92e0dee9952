#pragma once

#include <string>

#include "session/BestFrames.h"
#include "session/LineHistory.h"
#include "text/Record.h"

namespace orvantis::toolkit {

// Explanations with the keys that docs/command.md describes.

Record recordOf(const ZoneMoment& moment);
Record recordOf(const std::string& line, const TrackStory& story);
Record recordOf(const StampedSighting& sighting);

/// The verdict as one word for programs, such as "counted" or "passedBeside".
std::string verdictName(filter::monitor::CrossingVerdict verdict);

}  // namespace orvantis::toolkit
