#include "planar/Region.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <boost/geometry/algorithms/correct.hpp>
#include <boost/geometry/algorithms/intersects.hpp>
#include <boost/geometry/algorithms/overlaps.hpp>
#include <boost/geometry/algorithms/within.hpp>
#include <boost/geometry/geometries/segment.hpp>
#include <boost/geometry/strategies/cartesian.hpp>

namespace orvantis::planar {

namespace {

using Ring = PlanarPolygon::ring_type;

// A stored ring seen as an open one, so that the edge from its last vertex to its first is always there.
struct OpenRing {
  using iterator = Ring::const_iterator;
  using const_iterator = Ring::const_iterator;

  const_iterator begin() const { return ring.begin(); }
  const_iterator end() const { return ring.end(); }

  const Ring& ring;
};

}  // namespace

}  // namespace orvantis::planar

namespace boost::geometry::traits {

template <>
struct tag<orvantis::planar::OpenRing> {
  using type = ring_tag;
};
template <>
struct closure<orvantis::planar::OpenRing> {
  static constexpr closure_selector value = open;
};

}  // namespace boost::geometry::traits

namespace orvantis::planar {
namespace {

namespace bg = boost::geometry;

constexpr std::size_t smallestRing = 3;

bool samePlace(const PlanarPoint& a, const PlanarPoint& b) {
  return a.x() == b.x() && a.y() == b.y();
}

// The number of vertices without a repeated first one.
std::size_t numVertices(const Ring& ring) {
  const bool isClosed = ring.size() > 1 && samePlace(ring.front(), ring.back());
  return ring.size() - (isClosed ? 1 : 0);
}

bool boundsRegion(const Ring& ring) {
  return numVertices(ring) >= smallestRing && std::ranges::all_of(ring, [](const PlanarPoint& vertex) {
           return std::isfinite(vertex.x()) && std::isfinite(vertex.y());
         });
}

// The region as Boost.Geometry's relations want it: closed, outer ring clockwise, holes counterclockwise.
// Empty when the outer ring bounds no region.
PlanarPolygon region(const PlanarPolygon& polygon) {
  PlanarPolygon region;
  if (!boundsRegion(polygon.outer())) {
    return region;
  }
  region.outer() = polygon.outer();
  std::ranges::copy_if(polygon.inners(), std::back_inserter(region.inners()), boundsRegion);
  bg::correct(region);
  return region;
}

bool isEmpty(const PlanarPolygon& region) {
  return region.outer().empty();
}

double signedArea(const Ring& ring) {
  if (ring.size() < smallestRing) {
    return 0.0;
  }
  double sum = 0.0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const PlanarPoint& from = ring[i];
    const PlanarPoint& to = ring[i + 1 < ring.size() ? i + 1 : 0];
    sum += (from.y() - to.y()) * (from.x() + to.x());
  }
  return sum * 0.5;
}

}  // namespace

bool contains(const PlanarPolygon& polygon, const PlanarPoint& point) {
  if (std::isnan(point.x()) || std::isnan(point.y()) || polygon.outer().size() < smallestRing ||
      !bg::within(point, OpenRing{polygon.outer()})) {
    return false;
  }
  return std::ranges::none_of(polygon.inners(), [&](const Ring& hole) {
    return hole.size() >= smallestRing && bg::covered_by(point, OpenRing{hole});
  });
}

bool within(const PlanarPolygon& inner, const PlanarPolygon& outer) {
  const PlanarPolygon a = region(inner);
  const PlanarPolygon b = region(outer);
  return !isEmpty(a) && !isEmpty(b) && bg::within(a, b);
}

bool intersects(const PlanarPolygon& a, const PlanarPolygon& b) {
  const PlanarPolygon first = region(a);
  const PlanarPolygon second = region(b);
  return !isEmpty(first) && !isEmpty(second) && bg::intersects(first, second);
}

bool overlaps(const PlanarPolygon& a, const PlanarPolygon& b) {
  const PlanarPolygon first = region(a);
  const PlanarPolygon second = region(b);
  return !isEmpty(first) && !isEmpty(second) && bg::overlaps(first, second);
}

bool segmentIntersects(const PlanarPoint& first, const PlanarPoint& second, const PlanarPolygon& polygon) {
  const PlanarPolygon area = region(polygon);
  return !isEmpty(area) && bg::intersects(bg::model::segment<PlanarPoint>(first, second), area);
}

double signedArea(const PlanarPolygon& polygon) {
  double sum = signedArea(polygon.outer());
  for (const Ring& hole : polygon.inners()) {
    sum += signedArea(hole);
  }
  return sum;
}

}  // namespace orvantis::planar
