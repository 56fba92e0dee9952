#pragma once

#include <filter/classify/PointClassifier.h>
#include <filter/detection/ZoneDetector.h>

#include "session/Coordinates.h"

namespace orvantis::toolkit {

/// Counts the points of a frame in every zone with the zones' own point test, one zone and one point after
/// the other. Slow and plain: what the batch classifier has to agree with.
filter::classify::ZoneCounts countZoneByZone(const filter::detection::ZoneDetector& detector,
                                             const Points& points);

}  // namespace orvantis::toolkit
