#include "monitor/InsideRing.h"

#include <cstddef>

#include "monitor/Orientation.h"

namespace orvantis::filter::monitor {

bool isInside(const std::vector<core::PlanarPoint>& ring, const core::PlanarPoint& point) {
  bool isInside = false;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const core::PlanarPoint& from = ring[i];
    const core::PlanarPoint& to = ring[i + 1 < ring.size() ? i + 1 : 0];
    const bool climbs = to.y() > point.y();
    if (climbs != (from.y() > point.y()) && (orientation(from, to, point) > 0) == climbs) {
      isInside = !isInside;
    }
  }
  return isInside;
}

}  // namespace orvantis::filter::monitor
