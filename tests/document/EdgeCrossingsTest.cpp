#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <set>
#include <utility>

#include <gtest/gtest.h>

#include "document/EdgeCrossings.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::Point;
using Ring = std::vector<Point>;
using Pairs = std::set<std::pair<std::size_t, std::size_t>>;

Pairs pairsOf(const Ring& ring) {
  Pairs pairs;
  for (const EdgeCrossing& crossing : findEdgeCrossings(ring)) {
    pairs.emplace(crossing.first, crossing.second);
  }
  return pairs;
}

TEST(EdgeCrossings, AConvexRingOfEitherWindingHasNone) {
  EXPECT_EQ(pairsOf({{0, 0}, {0, 2}, {2, 2}, {2, 0}}), Pairs());
  EXPECT_EQ(pairsOf({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 0}}), Pairs());
}

TEST(EdgeCrossings, ABowTieCrossesInItsMiddle) {
  const auto crossings = findEdgeCrossings({{0, 0}, {2, 2}, {2, 0}, {0, 2}});
  ASSERT_EQ(crossings.size(), 1U);
  EXPECT_EQ(crossings[0].first, 0U);
  EXPECT_EQ(crossings[0].second, 2U);
  EXPECT_TRUE(crossings[0].proper);
  EXPECT_EQ(crossings[0].at.x(), 1.0);
  EXPECT_EQ(crossings[0].at.y(), 1.0);
}

TEST(EdgeCrossings, AVertexOnAnotherEdgeTouches) {
  const auto crossings = findEdgeCrossings({{0, 0}, {4, 0}, {4, 4}, {2, 0}, {0, 4}});
  ASSERT_EQ(crossings.size(), 2U);
  EXPECT_FALSE(crossings[0].proper);
  EXPECT_EQ(crossings[0].at.x(), 2.0);
  EXPECT_EQ(crossings[0].at.y(), 0.0);
}

TEST(EdgeCrossings, AnEdgeThatFoldsBackTouchesTheOneBefore) {
  EXPECT_EQ(pairsOf({{0, 0}, {4, 0}, {2, 0}, {2, 3}}), (Pairs{{0, 1}, {0, 2}}));
}

TEST(EdgeCrossings, RepeatedVerticesAreNoEdges) {
  EXPECT_EQ(pairsOf({{0, 0}, {0, 0}, {0, 1}, {1, 1}, {1, 1}, {1, 0}, {0, 0}}), Pairs());
}

// One unit in the last place decides; the products of the coordinates are all rounded.
TEST(EdgeCrossings, OneUnitInTheLastPlaceDecides) {
  const double third = 1.0 / 3.0;
  const double above = std::nextafter(third, 1.0);
  const double below = std::nextafter(third, 0.0);
  // The tip at (third, y) against the edge y = x from (0, 0) to (1, 1), from above.
  const auto ring = [third](double y) { return Ring{{0, 0}, {1, 1}, {0, 2}, {third, y}, {-1, 2}}; };
  EXPECT_EQ(pairsOf(ring(above)), Pairs());
  EXPECT_EQ(pairsOf(ring(third)), (Pairs{{0, 2}, {0, 3}}));
  EXPECT_EQ(pairsOf(ring(below)), (Pairs{{0, 2}, {0, 3}}));
}

TEST(EdgeCrossings, HugeAndTinyCoordinatesAreExact) {
  const double huge = std::numeric_limits<double>::max();
  const double tiny = std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(pairsOf({{-huge, -huge}, {huge, huge}, {huge, -huge}, {-huge, huge}}), (Pairs{{0, 2}}));
  EXPECT_EQ(pairsOf({{0, 0}, {0, tiny}, {huge, 0}}), Pairs());
}

// Whole numbers of 52 bits, of which the products have twice as many: where those are rounded, a vertex near
// a line comes to the wrong side of it. Two numbers of 64 bits hold the products here.
class WideTurn {
 public:
  WideTurn(std::int64_t a, std::int64_t b) : isNegative_((a < 0) != (b < 0)) {
    const auto x = static_cast<std::uint64_t>(a < 0 ? -a : a);
    const auto y = static_cast<std::uint64_t>(b < 0 ? -b : b);
    constexpr std::uint64_t half = 0xFFFFFFFFU;
    const std::uint64_t middle = (x >> 32U) * (y & half) + ((x & half) * (y & half) >> 32U);
    const std::uint64_t other = (x & half) * (y >> 32U) + (middle & half);
    high_ = (x >> 32U) * (y >> 32U) + (middle >> 32U) + (other >> 32U);
    low_ = x * y;
  }
  bool isAbove(const WideTurn& other) const {
    const auto sign = [](const WideTurn& n) { return n.high_ + n.low_ == 0 ? 0 : n.isNegative_ ? -1 : 1; };
    if (sign(*this) != sign(other)) {
      return sign(*this) > sign(other);
    }
    const std::pair mine(high_, low_);
    const std::pair its(other.high_, other.low_);
    return isNegative_ ? mine < its : mine > its;
  }

 private:
  bool isNegative_;
  std::uint64_t high_;
  std::uint64_t low_;
};

TEST(EdgeCrossings, NearALineTheVertexIsOnItsSide) {
  std::mt19937_64 random(7);
  constexpr std::int64_t unit = std::int64_t{1} << 50;
  constexpr std::int64_t step = 1024;  // between the doubles from 4 to 8 step * unit
  const auto below = [&](std::int64_t bound) {
    return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(bound));
  };
  int numWrong = 0;  // by rounded products
  for (int round = 0; round < 3000; ++round) {
    const std::int64_t ax = below(unit);
    const std::int64_t ay = below(unit);
    const std::int64_t bx = step * (3 * unit + below(unit));
    const std::int64_t by = step * (3 * unit + below(unit));
    const std::int64_t cx = step * (2 * unit + below(unit / 2));
    const double slope = static_cast<double>(by - ay) / static_cast<double>(bx - ax);
    const double onLine = static_cast<double>(ay) + slope * static_cast<double>(cx - ax);
    const std::int64_t cy = step * (std::llround(onLine / static_cast<double>(step)) + below(5) - 2);
    const bool isLeft = WideTurn(bx - ax, cy - ay).isAbove(WideTurn(by - ay, cx - ax));
    const auto at = [](std::int64_t x, std::int64_t y) {
      return filter::detection::Point(std::ldexp(static_cast<double>(x), -50),
                                      std::ldexp(static_cast<double>(y), -50));
    };
    const Ring ring = {at(ax, ay), at(bx, by), at(0, 7 * step * unit), at(cx, cy),
                       at(-step * unit, 7 * step * unit)};
    ASSERT_EQ(pairsOf(ring).empty(), isLeft) << "round " << round;
    const double rounded = (ring[1].x() - ring[0].x()) * (ring[3].y() - ring[0].y()) -
                           (ring[1].y() - ring[0].y()) * (ring[3].x() - ring[0].x());
    numWrong += (rounded > 0.0) != isLeft ? 1 : 0;
  }
  EXPECT_GT(numWrong, 100);
}

// Small whole coordinates make every degenerate case likely, and 64-bit integers decide them exactly.
class IntegerOracle {
 public:
  using Vertex = std::pair<std::int64_t, std::int64_t>;

  explicit IntegerOracle(const std::vector<Vertex>& ring) : ring_(ring) {}

  // Neighbours may share their common vertex and nothing else; others must share nothing.
  bool meet(std::size_t i, std::size_t j) const {
    const std::size_t n = ring_.size();
    const Vertex& a = ring_[i];
    const Vertex& b = ring_[(i + 1) % n];
    const Vertex& c = ring_[j];
    const Vertex& d = ring_[(j + 1) % n];
    if ((i + 1) % n == j) {
      return on(a, b, d) || on(c, d, a);
    }
    if ((j + 1) % n == i) {
      return on(a, b, c) || on(c, d, b);
    }
    // They share a point when each edge's ends are not strictly on one side of the other's line, or an end
    // lies on the other edge.
    const bool crossing = side(a, b, c) * side(a, b, d) < 0 && side(c, d, a) * side(c, d, b) < 0;
    return crossing || on(a, b, c) || on(a, b, d) || on(c, d, a) || on(c, d, b);
  }

 private:
  static int side(const Vertex& p, const Vertex& q, const Vertex& r) {
    const std::int64_t area =
        p.first * (q.second - r.second) + q.first * (r.second - p.second) + r.first * (p.second - q.second);
    return area > 0 ? 1 : area < 0 ? -1 : 0;
  }
  // A point is on a segment when the way over it is not longer: both parts point the same way.
  static bool on(const Vertex& p, const Vertex& q, const Vertex& r) {
    const std::int64_t dot =
        (r.first - p.first) * (r.first - q.first) + (r.second - p.second) * (r.second - q.second);
    return side(p, q, r) == 0 && dot <= 0;
  }

  std::vector<Vertex> ring_;
};

TEST(EdgeCrossings, RandomRingsAgreeWithIntegers) {
  std::mt19937 random(20);
  int withCrossings = 0;
  for (int round = 0; round < 4000; ++round) {
    std::vector<IntegerOracle::Vertex> ring(3 + random() % 6);
    Ring points;
    bool repeated = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
      ring[i] = {static_cast<std::int64_t>(random() % 5), static_cast<std::int64_t>(random() % 5)};
      repeated = repeated || (i > 0 && ring[i] == ring[i - 1]);
      points.emplace_back(static_cast<double>(ring[i].first), static_cast<double>(ring[i].second));
    }
    if (repeated || ring.front() == ring.back()) {
      continue;
    }
    const IntegerOracle oracle(ring);
    Pairs expected;
    for (std::size_t i = 0; i < ring.size(); ++i) {
      for (std::size_t j = i + 1; j < ring.size(); ++j) {
        if (oracle.meet(i, j)) {
          expected.emplace(i, j);
        }
      }
    }
    withCrossings += expected.empty() ? 0 : 1;
    std::string text;
    for (const auto& [x, y] : ring) {
      text += "(" + std::to_string(x) + "," + std::to_string(y) + ")";
    }
    ASSERT_EQ(pairsOf(points), expected) << "round " << round << ": " << text;
  }
  EXPECT_GT(withCrossings, 1000);
}

TEST(EdgeCrossings, FlatRingsAreThoseOnOneLine) {
  EXPECT_TRUE(isFlat({{0, 0}, {1, 1}, {3, 3}}));
  EXPECT_TRUE(isFlat({{0, 0}, {0, 0}, {3, 3}, {1, 1}}));
  EXPECT_FALSE(isFlat({{0, 0}, {0, 0}, {3, 3}, {1, 2}}));
  EXPECT_FALSE(isFlat({{0, 0}, {1, 1}, {3, std::nextafter(3.0, 4.0)}}));
}

}  // namespace
}  // namespace orvantis::toolkit
