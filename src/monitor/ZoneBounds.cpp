#include "monitor/ZoneBounds.h"

#include <cmath>
#include <limits>
#include <typeinfo>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

#include "monitor/PolygonRing.h"
#include "monitor/SectorContact.h"

namespace orvantis::filter::monitor {
namespace {

using detection::Polygon;
using detection::Rectangle;
using detection::Sector;

constexpr double infinity = std::numeric_limits<double>::infinity();

Bounds everywhere() {
  return {{-infinity, -infinity}, {infinity, infinity}};
}

// The bounds of the whole disc, made a little larger, because the sector's own test rounds distances.
Bounds boundsOfSector(const Sector& sector) {
  const double radius = std::abs(limitsOf(sector).radius);
  const double x = sector.getOrigin().x();
  const double y = sector.getOrigin().y();
  const double reach = radius + 1e-9 * (radius + std::abs(x) + std::abs(y));
  if (!std::isfinite(reach)) {
    return everywhere();
  }
  return {{x - reach, y - reach}, {x + reach, y + reach}};
}

Bounds boundsOfShape(const detection::Zone& shape) {
  const std::type_info& type = typeid(shape);
  if (type == typeid(Polygon) || type == typeid(Rectangle)) {
    // A ring with a coordinate that is not finite meets nothing, so its bounds do not matter.
    const auto ring = ringOf(static_cast<const Polygon&>(shape));
    return ring.empty() ? everywhere() : boundsOf(ring);
  }
  // A shape that a host derived from one of these may reach farther.
  return type == typeid(Sector) ? boundsOfSector(static_cast<const Sector&>(shape)) : everywhere();
}

}  // namespace

ZoneBounds::ZoneBounds() {
  for (Numbers* lower : {&left_, &bottom_, &zMin_}) {
    lower->fill(infinity);
  }
  for (Numbers* upper : {&right_, &top_, &zMax_}) {
    upper->fill(-infinity);
  }
}

void ZoneBounds::set(std::size_t slot, const detection::Zone& shape, double zMin, double zMax) {
  if (!(zMin <= zMax)) {
    return;  // it holds nothing
  }
  const auto [low, high] = boundsOfShape(shape);
  left_[slot] = low.x();
  bottom_[slot] = low.y();
  right_[slot] = high.x();
  top_[slot] = high.y();
  zMin_[slot] = zMin;
  zMax_[slot] = zMax;
}

std::uint32_t ZoneBounds::near(const Bounds& bounds, double zMin, double zMax) const {
  if (!(zMin <= zMax)) {
    return 0;
  }
  std::uint32_t near = 0;
  // Without branches: a processor cannot predict from one zone whether the object touches the next.
  const auto isAtLeast = [](double a, double b) { return static_cast<std::uint32_t>(a >= b); };
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    const std::uint32_t touches =
        isAtLeast(right_[slot], bounds.low.x()) & isAtLeast(bounds.high.x(), left_[slot]) &
        isAtLeast(top_[slot], bounds.low.y()) & isAtLeast(bounds.high.y(), bottom_[slot]) &
        isAtLeast(zMax_[slot], zMin) & isAtLeast(zMax, zMin_[slot]);
    near |= touches << slot;
  }
  return near;
}

}  // namespace orvantis::filter::monitor
