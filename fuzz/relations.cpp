// The relations of two polygons, of which the second may have a hole. They never crash, whatever the numbers
// are. For rings that do not touch themselves, the answers do not depend on the winding, the start vertex and
// repeated vertices; they are symmetric if they must be, and consistent with each other; and `intersects`
// agrees with the edges and the point test. A spike meets what its line meets. It changes no other answer,
// except `within` when it leaves the other polygon.

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

// Small whole numbers, for which the arithmetic below is exact, or any numbers.
Ring takeRing(Bytes& bytes, bool& isExact) {
  const auto kind = bytes.take<std::uint8_t>();
  const bool isSmall = kind < 0xC0U;
  isExact = isExact && isSmall;
  Ring ring;
  ring.resize(kind % 9U);
  for (PlanarPoint& vertex : ring) {
    const double x = isSmall ? bytes.take<std::int8_t>() : bytes.take<double>();
    vertex = PlanarPoint(x, isSmall ? bytes.take<std::int8_t>() : bytes.take<double>());
  }
  return ring;
}

PlanarPolygon polygonOf(const Ring& outer, const Ring& hole = {}) {
  PlanarPolygon polygon;
  polygon.outer() = outer;
  if (!hole.empty()) {
    polygon.inners().push_back(hole);
  }
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

// Whether edges meet only in the common vertices of neighbours.
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

bool isConvex(const Ring& ring) {
  bool left = false;
  bool right = false;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const int turn = side(ring[i], ring[(i + 1) % ring.size()], ring[(i + 2) % ring.size()]);
    left = left || turn > 0;
    right = right || turn < 0;
  }
  return !left || !right;
}

bool touch(const Ring& first, const Ring& second) {
  for (std::size_t i = 0; i < first.size(); ++i) {
    for (std::size_t j = 0; j < second.size(); ++j) {
      if (touch(first[i], first[(i + 1) % first.size()], second[j], second[(j + 1) % second.size()])) {
        return true;
      }
    }
  }
  return false;
}

bool isHoleOf(const Ring& hole, const Ring& outer) {
  return isSimple(hole) && !touch(hole, outer) && planar::contains(polygonOf(outer), hole.front());
}

// Each vertex twice, and the first one once more at the end.
Ring repeated(const Ring& ring) {
  Ring result;
  for (const PlanarPoint& vertex : ring) {
    result.insert(result.end(), 2, vertex);
  }
  result.push_back(ring.front());
  return result;
}

// A detour from one vertex to `tip` and back.
Ring spiked(const Ring& ring, std::size_t at, const PlanarPoint& tip) {
  Ring result = ring;
  result.insert(result.begin() + static_cast<std::ptrdiff_t>(at) + 1, {tip, PlanarPoint(ring[at])});
  return result;
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

void checkSpike(const Ring& first, std::size_t at, const PlanarPoint& tip, const PlanarPolygon& b,
                const Answers& answers) {
  const Answers spiky = ask(polygonOf(spiked(first, at, tip)), b);
  ORVANTIS_FUZZ_CHECK(spiky.intersects ==
                      (answers.intersects || planar::segmentIntersects(first[at], tip, b)));
  ORVANTIS_FUZZ_CHECK(spiky.overlaps == answers.overlaps);
  ORVANTIS_FUZZ_CHECK(!spiky.within || answers.within);
  ORVANTIS_FUZZ_CHECK(spiky.within || !answers.within || !planar::contains(b, tip) || !b.inners().empty() ||
                      !isConvex(b.outer()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  bool isExact = true;
  Ring first = takeRing(bytes, isExact);
  const Ring second = takeRing(bytes, isExact);
  const Ring hole = takeRing(bytes, isExact);
  const double tipX = bytes.take<std::int8_t>();
  const PlanarPoint tip(tipX, bytes.take<std::int8_t>());
  const PlanarPolygon a = polygonOf(first);
  const PlanarPolygon b = polygonOf(second, hole);
  const Answers answers = ask(a, b);
  if (!isExact || !isSimple(first) || !isSimple(second) || (!hole.empty() && !isHoleOf(hole, second))) {
    return 0;
  }
  ORVANTIS_FUZZ_CHECK(answers.intersects ==
                      (touch(first, second) || touch(first, hole) || planar::contains(b, first.front()) ||
                       planar::contains(a, second.front())));
  ORVANTIS_FUZZ_CHECK(answers.intersects == planar::intersects(b, a));
  ORVANTIS_FUZZ_CHECK(answers.overlaps == planar::overlaps(b, a));
  ORVANTIS_FUZZ_CHECK(!answers.within || answers.intersects);
  ORVANTIS_FUZZ_CHECK(!answers.overlaps || (answers.intersects && !answers.within && !answers.contains));
  checkSpike(first, 0, tip, b, answers);
  for (std::size_t turn = 0; turn < first.size(); ++turn) {
    std::rotate(first.begin(), first.begin() + 1, first.end());
    ORVANTIS_FUZZ_CHECK(ask(polygonOf(first), b) == answers);
    const Ring reversed(first.rbegin(), first.rend());
    ORVANTIS_FUZZ_CHECK(ask(polygonOf(reversed), b) == answers);
    ORVANTIS_FUZZ_CHECK(ask(polygonOf(repeated(first)), b) == answers);
  }
  const Ring turnedHole(hole.rbegin(), hole.rend());
  ORVANTIS_FUZZ_CHECK(ask(a, polygonOf(second, turnedHole)) == answers);
  return 0;
}
