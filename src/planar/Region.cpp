#include "planar/Region.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>

#include <boost/geometry/algorithms/correct.hpp>
#include <boost/geometry/algorithms/intersects.hpp>
#include <boost/geometry/algorithms/overlaps.hpp>
#include <boost/geometry/algorithms/relate.hpp>
#include <boost/geometry/algorithms/remove_spikes.hpp>
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

bool isFinite(const PlanarPoint& point) {
  return std::isfinite(point.x()) && std::isfinite(point.y());
}

bool boundsRegion(const Ring& ring) {
  return numVertices(ring) >= smallestRing && std::ranges::all_of(ring, isFinite);
}

// A spike, where the ring runs out and back along one line, encloses nothing, but the relations of
// Boost.Geometry would see it. A ring that is nothing but spikes stays as it is: a flat footprint still meets
// what it lies across.
void removeSpikes(Ring& ring) {
  Ring cleaned = ring;
  bg::remove_spikes(cleaned);
  if (numVertices(cleaned) >= smallestRing) {
    ring = std::move(cleaned);
  }
}

// The region as Boost.Geometry's relations want it: closed, without spikes, outer ring clockwise, holes
// counterclockwise. Empty when the outer ring bounds no region.
PlanarPolygon region(const PlanarPolygon& polygon) {
  PlanarPolygon region;
  if (!boundsRegion(polygon.outer())) {
    return region;
  }
  region.outer() = polygon.outer();
  std::ranges::copy_if(polygon.inners(), std::back_inserter(region.inners()), boundsRegion);
  bg::correct(region);
  removeSpikes(region.outer());
  std::ranges::for_each(region.inners(), removeSpikes);
  return region;
}

// The region of one ring alone, read as an outer one.
PlanarPolygon filled(const Ring& ring) {
  PlanarPolygon region;
  region.outer() = ring;
  bg::correct(region);
  return region;
}

bool interiorsMeet(const PlanarPolygon& a, const PlanarPolygon& b) {
  return bg::relate(a, b, bg::de9im::mask("T********"));
}

// `overlaps` of Boost 1.81 takes the place where a hole touches the outer ring for one where interiors meet.
// The relations of single rings are right, and tell what holds for a polygon with holes beside one without.
bool regionsOverlap(const PlanarPolygon& holed, const PlanarPolygon& plain) {
  const PlanarPolygon whole = filled(holed.outer());
  bool leavesPlain = false;  // whether `plain` has a part outside
  for (const Ring& hole : holed.inners()) {
    const PlanarPolygon gap = filled(hole);
    if (bg::within(plain, gap)) {
      return false;
    }
    leavesPlain = leavesPlain || interiorsMeet(plain, gap);
  }
  return interiorsMeet(whole, plain) && !bg::within(whole, plain) &&
         (leavesPlain || !bg::within(plain, whole));
}

bool isEmpty(const PlanarPolygon& region) {
  return region.outer().empty();
}

double signedArea(const Ring& ring) {
  // Without a repeated first vertex: its edge adds zero, or NaN where its x taken twice is beyond the range.
  const std::size_t count = numVertices(ring);
  if (count < smallestRing) {
    return 0.0;
  }
  double sum = 0.0;
  for (std::size_t i = 0; i < count; ++i) {
    const PlanarPoint& from = ring[i];
    const PlanarPoint& to = ring[i + 1 < count ? i + 1 : 0];
    sum += (from.y() - to.y()) * (from.x() + to.x());
  }
  return sum * 0.5;
}

}  // namespace

bool contains(const PlanarPolygon& polygon, const PlanarPoint& point) {
  // Whether a ring bounds a region is asked last: few points come that far, and the test goes through all
  // vertices.
  if (!isFinite(point) || polygon.outer().size() < smallestRing ||
      !bg::within(point, OpenRing{polygon.outer()}) || !boundsRegion(polygon.outer())) {
    return false;
  }
  return std::ranges::none_of(polygon.inners(), [&](const Ring& hole) {
    return bg::covered_by(point, OpenRing{hole}) && boundsRegion(hole);
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
  if (isEmpty(first) || isEmpty(second)) {
    return false;
  }
  if (second.inners().empty()) {
    return first.inners().empty() ? bg::overlaps(first, second) : regionsOverlap(first, second);
  }
  return first.inners().empty() ? regionsOverlap(second, first) : bg::overlaps(first, second);
}

bool segmentIntersects(const PlanarPoint& first, const PlanarPoint& second, const PlanarPolygon& polygon) {
  if (!isFinite(first) || !isFinite(second)) {
    return false;
  }
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
