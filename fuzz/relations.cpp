// The relations of two polygons: never a crash; for rings that do not touch themselves the same answer for
// either winding and every start vertex, symmetric where they must be, and consistent with each other.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "Bytes.h"
#include "Check.h"
#include "planar/Region.h"

namespace planar = orvantis::planar;
using orvantis::fuzz::Bytes;
using planar::PlanarPoint;
using planar::PlanarPolygon;

namespace {

using Ring = PlanarPolygon::ring_type;

Ring takeRing(Bytes& bytes) {
  Ring ring;
  ring.resize(bytes.take<std::uint8_t>() % 9U);
  for (PlanarPoint& vertex : ring) {
    const auto x = bytes.take<std::int8_t>();
    vertex = PlanarPoint(x, bytes.take<std::int8_t>());
  }
  return ring;
}

PlanarPolygon polygonOf(const Ring& ring) {
  PlanarPolygon polygon;
  polygon.outer() = ring;
  return polygon;
}

double cross(const PlanarPoint& a, const PlanarPoint& b, const PlanarPoint& p) {
  return (b.x() - a.x()) * (p.y() - a.y()) - (b.y() - a.y()) * (p.x() - a.x());  // exact for small integers
}

int side(const PlanarPoint& a, const PlanarPoint& b, const PlanarPoint& p) {
  const double value = cross(a, b, p);
  return (value > 0.0) - (value < 0.0);
}

bool isOn(const PlanarPoint& a, const PlanarPoint& b, const PlanarPoint& p) {
  return side(a, b, p) == 0 && std::min(a.x(), b.x()) <= p.x() && p.x() <= std::max(a.x(), b.x()) &&
         std::min(a.y(), b.y()) <= p.y() && p.y() <= std::max(a.y(), b.y());
}

bool touch(const PlanarPoint& a, const PlanarPoint& b, const PlanarPoint& c, const PlanarPoint& d) {
  return (side(a, b, c) * side(a, b, d) < 0 && side(c, d, a) * side(c, d, b) < 0) || isOn(a, b, c) ||
         isOn(a, b, d) || isOn(c, d, a) || isOn(c, d, b);
}

// Whether edges meet in nothing but the vertices that neighbours share.
bool isSimple(const Ring& ring) {
  const std::size_t n = ring.size();
  if (n < 3) {
    return false;
  }
  for (std::size_t i = 0; i < n; ++i) {
    const PlanarPoint& a = ring[i];
    const PlanarPoint& b = ring[(i + 1) % n];
    const PlanarPoint& c = ring[(i + 2) % n];
    if ((a.x() == b.x() && a.y() == b.y()) || isOn(a, b, c) || isOn(b, c, a)) {
      return false;
    }
    for (std::size_t j = i + 2; j < n; ++j) {
      if ((j + 1) % n != i && touch(a, b, ring[j], ring[(j + 1) % n])) {
        return false;
      }
    }
  }
  return true;
}

struct Answers {
  bool within;
  bool contains;
  bool intersects;
  bool overlaps;

  friend bool operator==(const Answers&, const Answers&) = default;
};

Answers ask(const PlanarPolygon& a, const PlanarPolygon& b) {
  return {planar::within(a, b), planar::within(b, a), planar::intersects(a, b), planar::overlaps(a, b)};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  Ring first = takeRing(bytes);
  const Ring second = takeRing(bytes);
  const PlanarPolygon a = polygonOf(first);
  const PlanarPolygon b = polygonOf(second);
  const Answers answers = ask(a, b);
  if (!isSimple(first) || !isSimple(second)) {
    return 0;
  }
  ORVANTIS_FUZZ_CHECK(answers.intersects == planar::intersects(b, a));
  ORVANTIS_FUZZ_CHECK(answers.overlaps == planar::overlaps(b, a));
  ORVANTIS_FUZZ_CHECK(!answers.within || answers.intersects);
  ORVANTIS_FUZZ_CHECK(!answers.overlaps || (answers.intersects && !answers.within && !answers.contains));
  for (std::size_t turn = 0; turn < first.size(); ++turn) {
    std::rotate(first.begin(), first.begin() + 1, first.end());
    ORVANTIS_FUZZ_CHECK(ask(polygonOf(first), b) == answers);
    const Ring reversed(first.rbegin(), first.rend());
    ORVANTIS_FUZZ_CHECK(ask(polygonOf(reversed), b) == answers);
    Ring closed = first;
    closed.push_back(first.front());
    ORVANTIS_FUZZ_CHECK(ask(polygonOf(closed), b) == answers);
  }
  return 0;
}
