#include "monitor/Box.h"

#include <algorithm>
#include <cmath>

#include "monitor/Bounds.h"

namespace orvantis::filter::monitor {
namespace {

core::PlanarPoint halfWay(const core::PlanarPoint& from, const core::PlanarPoint& to) {
  return {0.5 * (to.x() - from.x()), 0.5 * (to.y() - from.y())};
}

}  // namespace

std::optional<Box> boxOf(const core::State& footprint) {
  // The corners come in order, whatever the winding was; the fifth vertex is the first again.
  const auto& corners = footprint.polygon().outer();
  if (!footprint.centre() || corners.size() < 4) {
    return std::nullopt;
  }
  const double largest = std::max(std::max(largestOf(corners[0]), largestOf(corners[1])),
                                  std::max(largestOf(corners[2]), largestOf(corners[3])));
  return Box{*footprint.centre(), halfWay(corners[1], corners[0]), halfWay(corners[2], corners[1]), largest};
}

Box boxAround(const core::PlanarPolygon::ring_type& ring) {
  const auto [low, high] = boundsOf(ring);
  const core::PlanarPoint half = halfWay(low, high);
  return {{low.x() + half.x(), low.y() + half.y()},
          {half.x(), 0.0},
          {0.0, half.y()},
          std::max(largestOf(low), largestOf(high))};
}

double largestOf(const core::PlanarPoint& point) {
  return std::max(std::abs(point.x()), std::abs(point.y()));
}

}  // namespace orvantis::filter::monitor
