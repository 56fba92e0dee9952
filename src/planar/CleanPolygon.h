#pragma once

#include <vector>

#include "planar/Line.h"

namespace orvantis::planar {

/// A polygon taken apart into what the relations of Boost.Geometry are right about and the rest. Together
/// they are the same closed set of points.
struct CleanPolygon {
  /// Closed rings without spikes and repeated vertices, the outer one clockwise, holes counterclockwise.
  /// Empty when the polygon has no interior.
  PlanarPolygon region;
  /// Where a ring runs back over itself: lines of the border that enclose nothing.
  std::vector<Line> spikes;
};

CleanPolygon clean(const PlanarPolygon& polygon);

}  // namespace orvantis::planar
