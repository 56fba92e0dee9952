// The point tests against ones that are written another way: exact integers for rings, long double for
// sectors.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>

#include "Bytes.h"
#include "Check.h"

using orvantis::filter::detection::Point;
using orvantis::filter::detection::Polygon;
using orvantis::filter::detection::Sector;
using orvantis::fuzz::Bytes;

namespace {

struct Lattice {
  std::int64_t x;
  std::int64_t y;
};

Lattice takeLattice(Bytes& bytes) {
  const auto x = bytes.take<std::int8_t>();
  const auto y = bytes.take<std::int8_t>();
  return {x, y};
}

std::int64_t cross(const Lattice& a, const Lattice& b, const Lattice& p) {
  return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
}

bool isOnEdge(const Lattice& a, const Lattice& b, const Lattice& p) {
  return cross(a, b, p) == 0 && std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) &&
         std::min(a.y, b.y) <= p.y && p.y <= std::max(a.y, b.y);
}

// Inside when the ring winds about the point and no edge holds it.
bool isInside(const std::vector<Lattice>& ring, const Lattice& p) {
  int winding = 0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const Lattice& a = ring[i];
    const Lattice& b = ring[(i + 1) % ring.size()];
    if (isOnEdge(a, b, p)) {
      return false;
    }
    if (a.y <= p.y && b.y > p.y && cross(a, b, p) > 0) {
      ++winding;
    } else if (a.y > p.y && b.y <= p.y && cross(a, b, p) < 0) {
      --winding;
    }
  }
  return ring.size() >= 3 && winding != 0;
}

void checkRing(Bytes& bytes) {
  std::vector<Lattice> ring(bytes.take<std::uint8_t>() % 20);
  std::vector<Point> points;
  for (Lattice& vertex : ring) {
    vertex = takeLattice(bytes);
    points.emplace_back(static_cast<double>(vertex.x), static_cast<double>(vertex.y));
  }
  const Polygon polygon("ring", points);
  do {
    const Lattice p = takeLattice(bytes);
    ORVANTIS_FUZZ_CHECK(polygon.within(Point(static_cast<double>(p.x), static_cast<double>(p.y))) ==
                        isInside(ring, p));
  } while (!bytes.isEmpty());
}

void checkSector(Bytes& bytes) {
  constexpr double step = 0.01;
  const double from = bytes.take<std::int16_t>() * step;
  const double to = bytes.take<std::int16_t>() * step;
  const double radius = bytes.take<std::uint8_t>();
  const Sector sector("sector", from, to, radius);
  double first = 0.0;
  double second = 0.0;
  double storedRadius = 0.0;
  sector.getSector(first, second, storedRadius);
  do {
    const Lattice p = takeLattice(bytes);
    const auto x = static_cast<long double>(p.x);
    const auto y = static_cast<long double>(p.y);
    const long double bearing = std::atan2(y, x);
    const long double margin = 1e-9L;
    const bool isNearBearing = std::abs(bearing - first) < margin || std::abs(bearing - second) < margin;
    const bool isWhole = std::abs(first - second) < 0.0001;
    if (isNearBearing && !isWhole) {
      continue;  // the borders have their own tests
    }
    const bool isBetween = (bearing > first) != (bearing > second);
    const bool isInOpening = isWhole || (second > first ? isBetween : !isBetween);
    const bool expected = x * x + y * y <= static_cast<long double>(radius) * radius && isInOpening;
    ORVANTIS_FUZZ_CHECK(sector.within(Point(static_cast<double>(p.x), static_cast<double>(p.y))) == expected);
  } while (!bytes.isEmpty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  if (bytes.take<std::uint8_t>() % 2 == 0) {
    checkRing(bytes);
  } else {
    checkSector(bytes);
  }
  return 0;
}
