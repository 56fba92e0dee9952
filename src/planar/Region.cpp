#include "planar/Region.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include <boost/geometry/algorithms/correct.hpp>
#include <boost/geometry/algorithms/intersects.hpp>
#include <boost/geometry/algorithms/overlaps.hpp>
#include <boost/geometry/algorithms/relate.hpp>
#include <boost/geometry/algorithms/within.hpp>
#include <boost/geometry/strategies/cartesian.hpp>

#include "planar/CleanPolygon.h"

namespace orvantis::planar {

namespace {

// A stored ring that Boost.Geometry reads as open, so that it always has the edge from the last vertex to the
// first.
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

// The region that one ring bounds, without holes.
PlanarPolygon filled(const Ring& ring) {
  PlanarPolygon region;
  region.outer() = ring;
  bg::correct(region);
  return region;
}

bool interiorsMeet(const PlanarPolygon& a, const PlanarPolygon& b) {
  return bg::relate(a, b, bg::de9im::mask("T********"));
}

// `overlaps` of Boost 1.81 is wrong when a hole touches the outer ring: it takes that place for one where
// interiors meet. It is right for single rings, so the answer for a polygon with holes and one without is
// put together from their rings.
bool regionsOverlap(const PlanarPolygon& holed, const PlanarPolygon& plain) {
  const PlanarPolygon whole = filled(holed.outer());
  bool leavesPlain = false;  // whether `plain` has a part in a hole
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

bool regionsMeet(const PlanarPolygon& a, const PlanarPolygon& b) {
  return !a.outer().empty() && !b.outer().empty() && bg::intersects(a, b);
}

bool anySpikeMeets(const CleanPolygon& spiky, const CleanPolygon& polygon) {
  return std::any_of(spiky.spikes.begin(), spiky.spikes.end(), [&](const Line& spike) {
    return meet(spike, polygon.region) || std::any_of(polygon.spikes.begin(), polygon.spikes.end(),
                                                      [&](const Line& other) { return meet(spike, other); });
  });
}

double signedArea(const Ring& ring) {
  // The repeated first vertex is left out: its edge adds zero, but NaN when twice its x overflows.
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
  // `isRing` comes last: it goes through all vertices, and few points get that far.
  const Ring& outer = polygon.outer();
  const std::vector<Ring>& holes = polygon.inners();
  if (!isFinite(point) || outer.size() < smallestRing || !bg::within(point, OpenRing{outer}) ||
      !isRing(outer)) {
    return false;
  }
  return std::none_of(holes.begin(), holes.end(), [&](const Ring& hole) {
    return bg::covered_by(point, OpenRing{hole}) && isRing(hole);
  });
}

bool within(const PlanarPolygon& inner, const PlanarPolygon& outer) {
  const CleanPolygon a = clean(inner);
  const CleanPolygon b = clean(outer);
  // The interiors have to meet. So a ring of spikes only is within nothing, and nothing is within it.
  return !a.region.outer().empty() && !b.region.outer().empty() && bg::within(a.region, b.region) &&
         std::all_of(a.spikes.begin(), a.spikes.end(),
                     [&](const Line& spike) { return cover(b.region, b.spikes, spike); });
}

bool intersects(const PlanarPolygon& a, const PlanarPolygon& b) {
  const CleanPolygon first = clean(a);
  const CleanPolygon second = clean(b);
  return regionsMeet(first.region, second.region) || anySpikeMeets(first, second) ||
         anySpikeMeets(second, first);
}

bool overlaps(const PlanarPolygon& a, const PlanarPolygon& b) {
  const PlanarPolygon first = clean(a).region;
  const PlanarPolygon second = clean(b).region;
  if (first.outer().empty() || second.outer().empty()) {
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
  const Line segment{first, second};
  const CleanPolygon area = clean(polygon);
  return meet(segment, area.region) || std::any_of(area.spikes.begin(), area.spikes.end(),
                                                   [&](const Line& spike) { return meet(segment, spike); });
}

double signedArea(const PlanarPolygon& polygon) {
  double sum = signedArea(polygon.outer());
  for (const Ring& hole : polygon.inners()) {
    sum += signedArea(hole);
  }
  return sum;
}

}  // namespace orvantis::planar
