#include "planar/RandomRings.h"

#include <algorithm>
#include <numeric>

namespace orvantis::testing {
namespace {

// Whether the two rings share more than single points of their borders.
bool shareEdges(const GridRing& a, const GridRing& b) {
  int shared = 0;
  for (const GridPoint& vertex : a) {
    shared += locate({b}, vertex) == Place::Border ? 1 : 0;
  }
  for (const GridPoint& vertex : b) {
    shared += locate({a}, vertex) == Place::Border && std::count(a.begin(), a.end(), vertex) == 0 ? 1 : 0;
  }
  return shared > 1;
}

}  // namespace

std::int64_t RandomRings::number(std::int64_t low, std::int64_t high) {
  return low + static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(high - low + 1));
}

GridPoint RandomRings::point(std::int64_t size) {
  const std::int64_t x = number(0, size);
  return {x, number(0, size)};
}

GridRing RandomRings::any(std::int64_t size, int maxVertices) {
  GridRing ring(static_cast<std::size_t>(number(3, maxVertices)));
  for (GridPoint& vertex : ring) {
    vertex = point(size);
  }
  return ring;
}

GridRing RandomRings::simple(std::int64_t size, int maxVertices) {
  for (;;) {
    const GridRing ring = any(size, maxVertices);
    if (isSimple(ring)) {
      return ring;
    }
  }
}

GridPolygon RandomRings::withHole(std::int64_t size, int maxVertices) {
  for (;;) {
    const GridRing outer = simple(size, maxVertices);
    for (int attempt = 0; attempt < 20; ++attempt) {
      const GridRing hole = any(size, 4);
      const bool mayFit = std::none_of(hole.begin(), hole.end(), [&](const GridPoint& vertex) {
        return locate({outer}, vertex) == Place::Outside;
      });
      if (mayFit && isSimple(hole) && relate({hole}, {outer}).within && !shareEdges(hole, outer)) {
        return {outer, hole};
      }
    }
  }
}

GridRing RandomRings::withRepeatedVertices(GridRing ring) {
  for (std::int64_t i = number(1, 3); i > 0; --i) {
    const auto place = ring.begin() + number(0, static_cast<std::int64_t>(ring.size()) - 1);
    ring.insert(place, GridPoint(*place));
  }
  return ring;
}

GridRing RandomRings::withSpikes(GridRing ring, std::int64_t size) {
  for (std::int64_t i = number(1, 3); i > 0; --i) {
    const auto at = static_cast<std::size_t>(number(0, static_cast<std::int64_t>(ring.size()) - 1));
    const GridRing detour = spike(ring[at], ring[(at + 1) % ring.size()], size);
    ring.insert(ring.begin() + static_cast<std::ptrdiff_t>(at) + 1, detour.begin(), detour.end());
  }
  return ring;
}

// What comes between the two vertices.
GridRing RandomRings::spike(GridPoint from, GridPoint to, std::int64_t size) {
  const std::int64_t divisor = std::max<std::int64_t>(std::gcd(to.x - from.x, to.y - from.y), 1);
  const GridPoint step = {(to.x - from.x) / divisor, (to.y - from.y) / divisor};
  const auto along = [&](std::int64_t steps) {
    return GridPoint{from.x + steps * step.x, from.y + steps * step.y};
  };
  const GridPoint tip = point(size);
  const GridPoint onEdge = along(number(0, divisor));
  switch (number(0, 5)) {
    case 0:  // at a vertex, to anywhere
      return {tip, from};
    case 1:  // bent
      return {tip, point(size), tip, from};
    case 2:  // from the middle of the edge
      return {onEdge, tip, onEdge};
    case 3:  // the edge overshoots
      return {along(divisor + number(1, 3))};
    case 4:  // the edge starts backwards
      return {along(-number(1, 3))};
    default:  // back along the edge
      return {to, onEdge};
  }
}

}  // namespace orvantis::testing
