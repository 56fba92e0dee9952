#include "monitor/Bounds.h"

#include <algorithm>

namespace orvantis::filter::monitor {

Bounds boundsOf(const core::PlanarPolygon::ring_type& ring) {
  const auto x = [](const core::PlanarPoint& vertex) { return vertex.x(); };
  const auto y = [](const core::PlanarPoint& vertex) { return vertex.y(); };
  const auto [left, right] = std::ranges::minmax(ring, {}, x);
  const auto [bottom, top] = std::ranges::minmax(ring, {}, y);
  return {{left.x(), bottom.y()}, {right.x(), top.y()}};
}

bool areApart(const Bounds& a, const Bounds& b) {
  return a.high.x() < b.low.x() || b.high.x() < a.low.x() || a.high.y() < b.low.y() || b.high.y() < a.low.y();
}

}  // namespace orvantis::filter::monitor
