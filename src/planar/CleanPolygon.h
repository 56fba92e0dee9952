#pragma once

#include <vector>

#include "planar/Line.h"

namespace orvantis::planar {

/// A polygon split into a region, for which the relations of Boost.Geometry are right, and spikes, for which
/// they are not. Together they are the same closed set of points as the polygon.
struct CleanPolygon {
  /// Closed rings without spikes and repeated vertices, the outer ring clockwise, the holes counterclockwise.
  /// Empty when the polygon has no interior.
  PlanarPolygon region;
  /// Where a ring runs back over itself: lines of the border that enclose nothing.
  std::vector<Line> spikes;
};

CleanPolygon clean(const PlanarPolygon& polygon);

}  // namespace orvantis::planar
