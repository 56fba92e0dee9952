#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

#include <filter/monitor/TrackedObject.h>

#include "monitor/Bounds.h"

namespace orvantis::filter::monitor {
namespace {

using Ring = core::PlanarPolygon::ring_type;

bool isFinite(const core::PlanarPoint& point) {
  return std::isfinite(point.x()) && std::isfinite(point.y());
}

// Not finite for a ring that bounds no area.
core::PlanarPoint centroid(const Ring& ring) {
  // Triangles from the first vertex, each weighted by its signed area. Coordinates relative to that vertex
  // keep the digits of an object that is small and far away.
  const core::PlanarPoint& apex = ring.front();
  double area = 0.0;
  double x = 0.0;
  double y = 0.0;
  for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
    const double firstX = ring[i].x() - apex.x();
    const double firstY = ring[i].y() - apex.y();
    const double secondX = ring[i + 1].x() - apex.x();
    const double secondY = ring[i + 1].y() - apex.y();
    const double weight = firstX * secondY - firstY * secondX;
    area += weight;
    x += weight * (firstX + secondX);
    y += weight * (firstY + secondY);
  }
  return {apex.x() + x / (3.0 * area), apex.y() + y / (3.0 * area)};
}

bool canBePlaced(const Ring& ring) {
  return !ring.empty() && std::all_of(ring.begin(), ring.end(), isFinite);
}

}  // namespace

std::optional<core::PlanarPoint> referencePoint(const core::State& footprint) {
  // A box takes its given centre. The centroid of its rounded corners may be one rounding step off, and so on
  // another side of a line that runs through the centre.
  if (footprint.centre() && canBePlaced(footprint.polygon().outer())) {
    return footprint.centre();
  }
  return referencePoint(footprint.polygon());
}

std::optional<core::PlanarPoint> referencePoint(const core::PlanarPolygon& footprint) {
  const Ring& ring = footprint.outer();
  if (!canBePlaced(ring)) {
    return std::nullopt;
  }
  const auto [low, high] = boundsOf(ring);
  const core::PlanarPoint centre = centroid(ring);
  if (!isFinite(centre)) {
    return core::PlanarPoint(std::midpoint(low.x(), high.x()), std::midpoint(low.y(), high.y()));
  }
  // Rounding, and rings that cross themselves, can carry the centroid away.
  return core::PlanarPoint(std::clamp(centre.x(), low.x(), high.x()),
                           std::clamp(centre.y(), low.y(), high.y()));
}

}  // namespace orvantis::filter::monitor
