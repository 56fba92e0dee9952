#include "monitor/Bounds.h"

#include <algorithm>

namespace orvantis::filter::monitor {

Bounds boundsOf(const core::PlanarPolygon::ring_type& ring) {
  Bounds bounds{ring.front(), ring.front()};
  for (const core::PlanarPoint& vertex : ring) {
    bounds.low.x(std::min(bounds.low.x(), vertex.x()));
    bounds.low.y(std::min(bounds.low.y(), vertex.y()));
    bounds.high.x(std::max(bounds.high.x(), vertex.x()));
    bounds.high.y(std::max(bounds.high.y(), vertex.y()));
  }
  return bounds;
}

bool areApart(const Bounds& a, const Bounds& b) {
  return a.high.x() < b.low.x() || b.high.x() < a.low.x() || a.high.y() < b.low.y() || b.high.y() < a.low.y();
}

}  // namespace orvantis::filter::monitor
