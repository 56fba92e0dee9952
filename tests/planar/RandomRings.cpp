#include "planar/RandomRings.h"

#include <algorithm>

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

GridRing RandomRings::withIdleVertices(GridRing ring, bool withSpikes) {
  const std::int64_t numIdle = number(1, 3);
  for (std::int64_t i = 0; i < numIdle; ++i) {
    const auto place = ring.begin() + number(0, static_cast<std::int64_t>(ring.size()) - 1);
    const GridPoint vertex = *place;
    if (withSpikes) {
      ring.insert(place, {vertex, point(9)});
    } else {
      ring.insert(place, vertex);
    }
  }
  return ring;
}

}  // namespace orvantis::testing
