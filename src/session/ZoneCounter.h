#pragma once

#include <filter/classify/PointClassifier.h>
#include <filter/detection/ZoneDetector.h>

#include "session/Coordinates.h"

namespace orvantis::toolkit {

/// Counts the points of a frame in every zone with the zones' own point test, zone by zone and point by
/// point. It is slow and simple: the reference that the batch classifier must agree with.
filter::classify::ZoneCounts countZoneByZone(const filter::detection::ZoneDetector& detector,
                                             const Points& points);

}  // namespace orvantis::toolkit
