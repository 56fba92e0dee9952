// Compares the point tests with other implementations: exact integers for rings, long double for sectors and
// turned rectangles. Points close to the borders of these have their own tests.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

#include "Bytes.h"
#include "Check.h"

using orvantis::filter::detection::Point;
using orvantis::filter::detection::Polygon;
using orvantis::filter::detection::Rectangle;
using orvantis::filter::detection::Sector;
using orvantis::fuzz::Bytes;

namespace {

struct Lattice {
  std::int64_t x;
  std::int64_t y;
};

// Points closer than this to a border are not compared, because rounding may decide there.
constexpr long double margin = 1e-9L;

Lattice takeLattice(Bytes& bytes) {
  const auto x = bytes.take<std::int8_t>();
  const auto y = bytes.take<std::int8_t>();
  return {x, y};
}

Point pointOf(const Lattice& p) {
  return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

std::int64_t cross(const Lattice& a, const Lattice& b, const Lattice& p) {
  return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
}

bool isOnEdge(const Lattice& a, const Lattice& b, const Lattice& p) {
  return cross(a, b, p) == 0 && std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) &&
         std::min(a.y, b.y) <= p.y && p.y <= std::max(a.y, b.y);
}

// Inside if the ring winds about the point and the point is not on an edge.
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
    points.push_back(pointOf(vertex));
  }
  const Polygon polygon("ring", points);
  do {
    const Lattice p = takeLattice(bytes);
    ORVANTIS_FUZZ_CHECK(polygon.within(pointOf(p)) == isInside(ring, p));
  } while (!bytes.isEmpty());
}

void checkSector(Bytes& bytes) {
  constexpr double step = 0.01;
  const double from = bytes.take<std::int16_t>() * step;
  const double to = bytes.take<std::int16_t>() * step;
  const double radius = bytes.take<std::uint8_t>();
  const Lattice origin = takeLattice(bytes);
  const Sector sector("sector", from, to, radius, pointOf(origin));
  double first = 0.0;
  double second = 0.0;
  double storedRadius = 0.0;
  sector.getSector(first, second, storedRadius);
  do {
    const Lattice p = takeLattice(bytes);
    const auto x = static_cast<long double>(p.x - origin.x);
    const auto y = static_cast<long double>(p.y - origin.y);
    const long double bearing = std::atan2(y, x);
    const bool isNearBearing = std::abs(bearing - first) < margin || std::abs(bearing - second) < margin;
    const bool isWhole = std::abs(first - second) < 0.0001;
    if (isNearBearing && !isWhole) {
      continue;
    }
    const bool isBetween = (bearing > first) != (bearing > second);
    const bool isInOpening = isWhole || (second > first ? isBetween : !isBetween);
    const bool expected = x * x + y * y <= static_cast<long double>(radius) * radius && isInOpening;
    ORVANTIS_FUZZ_CHECK(sector.within(pointOf(p)) == expected);
  } while (!bytes.isEmpty());
}

void checkRectangle(Bytes& bytes) {
  constexpr double step = 0.1;
  const double rotation = bytes.take<std::int16_t>() * step;
  const Lattice first = takeLattice(bytes);
  const Lattice second = takeLattice(bytes);
  const Rectangle rectangle("rectangle", {pointOf(first), pointOf(second)}, rotation);
  const long double angle = rotation * (std::numbers::pi_v<long double> / 180.0L);
  const long double halfWidth = std::abs(second.x - first.x) / 2.0L;
  const long double halfHeight = std::abs(second.y - first.y) / 2.0L;
  do {
    const Lattice p = takeLattice(bytes);
    const long double x = p.x - (first.x + second.x) / 2.0L;
    const long double y = p.y - (first.y + second.y) / 2.0L;
    // Turned back: how far the point is inside each pair of sides.
    const long double insideWidth = halfWidth - std::abs(std::cos(angle) * x + std::sin(angle) * y);
    const long double insideHeight = halfHeight - std::abs(std::cos(angle) * y - std::sin(angle) * x);
    const long double inside = std::min(insideWidth, insideHeight);
    if (std::abs(inside) >= margin) {
      ORVANTIS_FUZZ_CHECK(rectangle.within(pointOf(p)) == (inside > 0.0L));
    }
  } while (!bytes.isEmpty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  switch (bytes.take<std::uint8_t>() % 3) {
    case 0:
      checkRing(bytes);
      break;
    case 1:
      checkSector(bytes);
      break;
    default:
      checkRectangle(bytes);
  }
  return 0;
}
