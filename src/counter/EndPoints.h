#pragma once

#include <utility>
#include <vector>

#include <core/Planar.h>

namespace orvantis::filter::detection {

/// First and second point of a line. A line that was moved from holds no points and reads as a line from
/// (0, 0) to (0, 0).
inline std::pair<core::PlanarPoint, core::PlanarPoint> endPoints(
    const std::vector<core::PlanarPoint>& points) {
  const core::PlanarPoint origin(0.0, 0.0);
  return points.size() == 2 ? std::pair(points[0], points[1]) : std::pair(origin, origin);
}

}  // namespace orvantis::filter::detection
