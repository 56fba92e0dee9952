#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/Zone3dBase.h>
#include <filter/detection/ZoneDetector.h>

namespace orvantis::testing {

/// One zone of every shape, about the origin and some ten units wide, between the heights 0 and 2.
std::vector<std::shared_ptr<filter::detection::Zone3dBase>> zonesOfEveryShape();

/// A detector with these zones in its fields 0 and 1, and a disc that excludes points.
filter::detection::ZoneDetector detectorOfEveryShape();

using Points = std::vector<std::array<float, 3>>;

/// A square grid of points over the zones, at changing heights.
Points gridOfPoints();

/// A range of the points; all of them if nothing else is said.
filter::classify::PointsView<float> viewOf(const Points& points, std::size_t first = 0,
                                           std::size_t size = std::numeric_limits<std::size_t>::max());

}  // namespace orvantis::testing
