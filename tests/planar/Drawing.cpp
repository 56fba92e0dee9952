#include "planar/Drawing.h"

#include <algorithm>
#include <utility>

#include <filter/detection/Polygon.h>

namespace orvantis::testing {

using filter::detection::Point;
using filter::detection::Polygon;

std::vector<Writing> writingsOf(const GridRing& ring) {
  std::vector<Writing> writings;
  for (std::size_t start = 0; start < ring.size(); ++start) {
    for (const bool isReversed : {false, true}) {
      for (const bool repeatsFirst : {false, true}) {
        writings.push_back({start, isReversed, repeatsFirst});
      }
    }
  }
  return writings;
}

GridRing written(const GridRing& ring, const Writing& writing) {
  GridRing result = ring;
  std::rotate(result.begin(), result.begin() + static_cast<std::ptrdiff_t>(writing.start), result.end());
  if (writing.isReversed) {
    std::reverse(result.begin(), result.end());
  }
  if (writing.repeatsFirst) {
    result.push_back(GridPoint(result.front()));
  }
  return result;
}

GridPolygon mirrored(const GridPolygon& polygon, int symmetry) {
  GridPolygon result = polygon;
  for (GridRing& ring : result) {
    for (GridPoint& point : ring) {
      if ((symmetry & 1) != 0) {
        point.x = -point.x;
      }
      if ((symmetry & 2) != 0) {
        point.y = -point.y;
      }
      if ((symmetry & 4) != 0) {
        std::swap(point.x, point.y);
      }
    }
  }
  return result;
}

core::PlanarPolygon planar(const GridPolygon& polygon, const Scale& scale) {
  core::PlanarPolygon result;
  result.inners().resize(polygon.size() - 1);
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    auto& ring = i == 0 ? result.outer() : result.inners()[i - 1];
    for (const Point& point : points(polygon[i], scale)) {
      ring.emplace_back(point.x(), point.y());
    }
  }
  return result;
}

std::vector<Point> points(const GridRing& ring, const Scale& scale) {
  std::vector<Point> result;
  for (const GridPoint& point : ring) {
    result.emplace_back(scale.offset + scale.step * static_cast<double>(point.x),
                        scale.offset + scale.step * static_cast<double>(point.y));
  }
  return result;
}

Relation answers(const core::PlanarPolygon& argument, const std::vector<Point>& zone) {
  const Polygon polygon("zone", zone);
  return {polygon.within(argument), polygon.intersects(argument), polygon.overlaps(argument)};
}

}  // namespace orvantis::testing
