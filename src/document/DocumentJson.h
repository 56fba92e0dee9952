#pragma once

#include <boost/json/object.hpp>

#include "document/Configuration.h"

namespace orvantis::toolkit {

/// The content of a document as one JSON object with the keys that docs/command.md describes.
boost::json::object toObject(const Configuration& configuration);

/// "low" or "high".
const char* triggerLevelName(const filter::detection::ZoneDetector& detector);

}  // namespace orvantis::toolkit
