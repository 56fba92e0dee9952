#include "monitor/SectorContact.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "monitor/InsideRing.h"
#include "monitor/Orientation.h"
#include "trigonometry/Trigonometry.h"

namespace orvantis::filter::monitor {
namespace {

using core::PlanarPoint;
using detection::Point;
using detection::Sector;

using Ring = core::PlanarPolygon::ring_type;

// Calls `test` with each edge of the ring, also the closing one, until it returns true.
template <typename Test>
bool anyEdge(const Ring& ring, const Test& test) {
  for (std::size_t i = 0; i < ring.size(); ++i) {
    if (test(ring[i], ring[i + 1 < ring.size() ? i + 1 : 0])) {
      return true;
    }
  }
  return false;
}

// The border of a sector, with the bearings as directions of length 1.
struct Border {
  explicit Border(const Sector& sector) : origin(sector.getOrigin().x(), sector.getOrigin().y()) {
    const SectorLimits limits = limitsOf(sector);
    radius = limits.radius;
    first = {trigonometry::cosine(limits.minAngle), trigonometry::sine(limits.minAngle)};
    second = {trigonometry::cosine(limits.maxAngle), trigonometry::sine(limits.maxAngle)};
  }

  PlanarPoint origin;
  double radius;
  PlanarPoint first;
  PlanarPoint second;
};

// Where the way from one point to another may enter or leave the sector, as shares of the way in ascending
// order: at both ends, on the circle, and on the lines of the two bearings.
class Cuts {
 public:
  Cuts(const Border& border, const PlanarPoint& from, const PlanarPoint& to) {
    const double x = from.x() - border.origin.x();
    const double y = from.y() - border.origin.y();
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    addCircle(dx * dx + dy * dy, x * dx + y * dy, x * x + y * y - border.radius * border.radius);
    addBearing(border.first, x, y, dx, dy);
    addBearing(border.second, x, y, dx, dy);
    add(1.0);
  }

  const double* begin() const { return shares_.data(); }
  const double* end() const { return shares_.data() + size_; }

 private:
  void add(double share) {
    if (!(share > 0.0 && share <= 1.0)) {
      return;
    }
    std::size_t at = size_++;
    for (; shares_[at - 1] > share; --at) {  // ends at the first share, which is 0
      shares_[at] = shares_[at - 1];
    }
    shares_[at] = share;
  }

  // The roots of a t^2 + 2 b t + c.
  void addCircle(double a, double b, double c) {
    const double discriminant = b * b - a * c;
    if (a > 0.0 && discriminant >= 0.0) {
      add((-b - std::sqrt(discriminant)) / a);
      add((-b + std::sqrt(discriminant)) / a);
    }
  }

  void addBearing(const PlanarPoint& direction, double x, double y, double dx, double dy) {
    const double across = direction.x() * dy - direction.y() * dx;
    if (across != 0.0) {
      add((direction.y() * x - direction.x() * y) / across);
    }
  }

  std::array<double, 6> shares_{};  // the first one is 0
  std::size_t size_ = 1;
};

bool runsThrough(const Sector& sector, const Border& border, const PlanarPoint& from, const PlanarPoint& to) {
  double last = 0.0;
  for (const double share : Cuts(border, from, to)) {
    // Between two cuts the way is wholly inside or wholly outside.
    const double between = 0.5 * (last + share);
    if (sector.within(Point(std::lerp(from.x(), to.x(), between), std::lerp(from.y(), to.y(), between)))) {
      return true;
    }
    last = share;
  }
  return false;
}

}  // namespace

SectorLimits limitsOf(const Sector& sector) {
  SectorLimits limits{};
  sector.getSector(limits.minAngle, limits.maxAngle, limits.radius);
  return limits;
}

bool shareAnyPoint(const Sector& sector, const core::PlanarPolygon& footprint) {
  const Ring& ring = footprint.outer();
  const bool hasVertexWithin = std::any_of(ring.begin(), ring.end(), [&](const PlanarPoint& vertex) {
    return sector.within(Point(vertex.x(), vertex.y()));
  });
  if (hasVertexWithin) {
    return true;
  }
  const Border border(sector);
  return anyEdge(ring, [&](const PlanarPoint& from,
                           const PlanarPoint& to) { return runsThrough(sector, border, from, to); }) ||
         isInside(ring, border.origin);
}

}  // namespace orvantis::filter::monitor
