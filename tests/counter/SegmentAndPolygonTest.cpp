#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <core/State.h>
#include <filter/detection/CounterLine.h>

#include "support/LogCapture.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::LogCapture;
using orvantis::testing::Record;

using Point = CounterLine::point;
using Polygon = CounterLine::polygon;
using Ring = std::vector<std::pair<std::int64_t, std::int64_t>>;
using Texts = std::vector<std::string>;

CounterLine line(const Point& first, const Point& second) {
  return {"L", first, second, nullptr, CounterLineDirectionType::LEFT};
}

void fill(Polygon::ring_type& out, const Ring& ring) {
  for (const auto& [x, y] : ring) {
    out.emplace_back(static_cast<double>(x), static_cast<double>(y));
  }
}

Polygon polygon(const Ring& outer, const std::vector<Ring>& holes = {}) {
  Polygon polygon;
  fill(polygon.outer(), outer);
  for (const Ring& hole : holes) {
    polygon.inners().emplace_back();
    fill(polygon.inners().back(), hole);
  }
  return polygon;
}

// The ring from every start vertex, in both directions, with and without its first vertex repeated.
std::vector<Ring> writings(const Ring& ring) {
  std::vector<Ring> all;
  for (std::size_t start = 0; start < ring.size(); ++start) {
    Ring turned = ring;
    std::rotate(turned.begin(), turned.begin() + static_cast<std::ptrdiff_t>(start), turned.end());
    for (int winding = 0; winding < 2; ++winding) {
      all.push_back(turned);
      Ring closed = turned;
      closed.push_back(turned.front());
      all.push_back(closed);
      std::reverse(turned.begin(), turned.end());
    }
  }
  return all;
}

const Ring square = {{0, 0}, {0, 4}, {4, 4}, {4, 0}};
// A U that opens upwards, its arms from y = 1 to 4.
const Ring horseshoe = {{0, 0}, {0, 4}, {1, 4}, {1, 1}, {3, 1}, {3, 4}, {4, 4}, {4, 0}};

struct Case {
  const char* what;
  CounterLine segment;
  bool intersects;
  bool within;
};

void check(const Ring& outer, const std::vector<Case>& cases) {
  for (const Ring& writing : writings(outer)) {
    const Polygon area = polygon(writing);
    for (const Case& c : cases) {
      EXPECT_EQ(c.segment.intersects(area), c.intersects)
          << c.what << ", " << ::testing::PrintToString(writing);
      EXPECT_EQ(c.segment.within(area), c.within) << c.what << ", " << ::testing::PrintToString(writing);
      const auto& points = c.segment.getPoints();
      const CounterLine backwards = line(points[1], points[0]);
      EXPECT_EQ(backwards.intersects(area), c.intersects) << c.what << " backwards";
      EXPECT_EQ(backwards.within(area), c.within) << c.what << " backwards";
    }
  }
}

TEST(SegmentAndPolygon, ASquareInEveryWriting) {
  check(square, {{"inside", line({1, 1}, {3, 2}), true, true},
                 {"outside", line({5, 1}, {6, 2}), false, false},
                 {"across one edge", line({2, 2}, {6, 2}), true, false},
                 {"across two edges", line({-1, 2}, {5, 2}), true, false},
                 {"across the closing edge", line({2, -1}, {2, 1}), true, false},
                 {"through a corner", line({-1, 1}, {1, -1}), true, false},
                 {"touching a corner", line({4, 4}, {6, 6}), true, false},
                 {"past a corner", line({3, 6}, {6, 3}), false, false},
                 {"one end on the border", line({2, 2}, {4, 2}), true, false},
                 {"one end on the closing edge", line({2, 2}, {2, 0}), true, false},
                 {"both ends on the border", line({0, 2}, {4, 2}), true, false},
                 {"along an edge", line({0, 1}, {0, 3}), true, false},
                 {"along the closing edge", line({1, 0}, {3, 0}), true, false},
                 {"on the line of an edge, beyond it", line({0, 5}, {0, 6}), false, false},
                 {"a dot inside", line({1, 1}, {1, 1}), true, true},
                 {"a dot on the border", line({0, 1}, {0, 1}), true, false},
                 {"a dot outside", line({-1, 1}, {-1, 1}), false, false},
                 {"by a hair outside", line({4.0000001, 0}, {4.0000001, 4}), false, false}});
}

TEST(SegmentAndPolygon, AHorseshoeInEveryWriting) {
  check(horseshoe, {{"from arm to arm through the gap", line({0.5, 3}, {3.5, 3}), true, true},
                    {"in the gap", line({1.5, 2}, {2.5, 3}), false, false},
                    {"out of the gap into an arm", line({2, 2}, {0.5, 2}), true, false},
                    {"above both arms", line({-1, 5}, {5, 5}), false, false},
                    {"touching both arms", line({-1, 4}, {5, 4}), true, false},
                    {"in the base", line({0.5, 0.5}, {3.5, 0.5}), true, true},
                    {"along the floor of the gap", line({1.5, 1}, {2.5, 1}), true, false}});
}

TEST(SegmentAndPolygon, AHoleIsOutsideInEveryWriting) {
  const Ring hole = {{1, 1}, {1, 3}, {3, 3}, {3, 1}};
  for (const Ring& outer : writings(square)) {
    for (const Ring& inner : writings(hole)) {
      const Polygon area = polygon(outer, {inner});
      SCOPED_TRACE(::testing::PrintToString(outer) + " " + ::testing::PrintToString(inner));
      EXPECT_FALSE(line({1.5, 1.5}, {2.5, 2.5}).intersects(area)) << "in the hole";
      EXPECT_FALSE(line({1.5, 1.5}, {2.5, 2.5}).within(area));
      EXPECT_TRUE(line({1.5, 1.5}, {1, 2}).intersects(area)) << "touching the hole's border from inside";
      EXPECT_TRUE(line({2, 2}, {3.5, 2}).intersects(area)) << "out of the hole";
      EXPECT_FALSE(line({2, 2}, {3.5, 2}).within(area));
      EXPECT_TRUE(line({0.5, 2}, {3.5, 2}).within(area)) << "across the hole: only the ends are looked at";
      EXPECT_TRUE(line({0.5, 0.5}, {0.5, 3.5}).within(area)) << "beside the hole";
      EXPECT_FALSE(line({0.5, 2}, {1, 2}).within(area)) << "an end on the hole's border";
    }
  }
}

TEST(SegmentAndPolygon, FewerThanThreeVerticesMeetNoLine) {
  for (const Ring& ring :
       {Ring{}, Ring{{0, 0}}, Ring{{0, 0}, {2, 0}}, Ring{{0, 0}, {0, 0}}, Ring{{0, 0}, {2, 0}, {0, 0}}}) {
    const Polygon area = polygon(ring);
    for (const CounterLine& segment :
         {line({0, 0}, {0, 0}), line({0, 0}, {2, 0}), line({1, -1}, {1, 1}), CounterLine()}) {
      EXPECT_FALSE(segment.intersects(area)) << ::testing::PrintToString(ring);
      EXPECT_FALSE(segment.within(area)) << ::testing::PrintToString(ring);
    }
  }
}

TEST(SegmentAndPolygon, CoordinatesThatAreNotFiniteMeetNothing) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double odd : {infinity, -infinity, nan}) {
    Polygon area = polygon(square);
    area.outer()[1].x(odd);
    EXPECT_FALSE(line({1, 1}, {3, 2}).intersects(area)) << odd;
    EXPECT_FALSE(line({1, 1}, {3, 2}).within(area)) << odd;
  }
  EXPECT_FALSE(line({nan, 1}, {2, 2}).within(polygon(square)));
  EXPECT_FALSE(line({2, 2}, {1, nan}).within(polygon(square)));
  EXPECT_FALSE(line({2, 2}, {infinity, 2}).within(polygon(square)));
  EXPECT_FALSE(line({2, 2}, {infinity, 2}).intersects(polygon(square)));
  EXPECT_FALSE(line({2, -infinity}, {2, 2}).intersects(polygon(square)));
  EXPECT_FALSE(line({nan, nan}, {nan, nan}).intersects(polygon(square)));
  EXPECT_FALSE(line({nan, 1}, {2, 2}).intersects(polygon(square)));
  EXPECT_FALSE(line({2, 2}, {1, nan}).intersects(polygon(square)));
}

TEST(SegmentAndPolygon, AnswersForTheFootprintOfATrackedObject) {
  const core::State box(10.0, 5.0, 4.0, 2.0, 0.0);  // x from 8 to 12, y from 4 to 6
  EXPECT_TRUE(line({9, 5}, {11, 5}).within(box));
  EXPECT_TRUE(line({9, 5}, {11, 5}).intersects(box));
  EXPECT_FALSE(line({9, 5}, {13, 5}).within(box));
  EXPECT_TRUE(line({9, 5}, {13, 5}).intersects(box));
  EXPECT_FALSE(line({13, 5}, {14, 5}).intersects(box));
  EXPECT_TRUE(line({12, 0}, {12, 10}).intersects(box)) << "along its front";
  for (const Ring& writing : writings(square)) {
    const core::State footprint(polygon(writing));
    EXPECT_TRUE(line({1, 1}, {3, 3}).within(footprint));
    EXPECT_TRUE(line({2, -1}, {2, 1}).intersects(footprint));
    EXPECT_FALSE(line({5, 1}, {6, 2}).intersects(footprint));
  }
}

TEST(SegmentAndPolygon, AFootprintWithoutVerticesMeetsNoLine) {
  const core::State nothing{Polygon()};
  for (const CounterLine& segment : {line({0, 0}, {1, 1}), CounterLine()}) {
    EXPECT_FALSE(segment.intersects(nothing));
    EXPECT_FALSE(segment.within(nothing));
  }
}

TEST(SegmentAndPolygon, AMovedFromLineMeetsNothing) {
  CounterLine source = line({1, 1}, {3, 2});
  const CounterLine moved(std::move(source));
  const Polygon aroundTheOrigin = polygon({{-1, -1}, {-1, 1}, {1, 1}, {1, -1}});
  EXPECT_FALSE(
      source.intersects(aroundTheOrigin));  // NOLINT(bugprone-use-after-move): what is left is under test
  EXPECT_FALSE(source.within(aroundTheOrigin));
  EXPECT_FALSE(source.intersects(core::State(aroundTheOrigin)));
  EXPECT_FALSE(source.within(core::State(aroundTheOrigin)));
}

// Independent answers for whole coordinates, by integers alone.

std::int64_t cross(const std::pair<std::int64_t, std::int64_t>& a,
                   const std::pair<std::int64_t, std::int64_t>& b,
                   const std::pair<std::int64_t, std::int64_t>& c) {
  return (b.first - a.first) * (c.second - a.second) - (b.second - a.second) * (c.first - a.first);
}

int sign(std::int64_t value) {
  return value > 0 ? 1 : value < 0 ? -1 : 0;
}

bool isOnSegment(const std::pair<std::int64_t, std::int64_t>& a,
                 const std::pair<std::int64_t, std::int64_t>& b,
                 const std::pair<std::int64_t, std::int64_t>& p) {
  return cross(a, b, p) == 0 && std::min(a.first, b.first) <= p.first &&
         p.first <= std::max(a.first, b.first) && std::min(a.second, b.second) <= p.second &&
         p.second <= std::max(a.second, b.second);
}

bool segmentsMeet(const std::pair<std::int64_t, std::int64_t>& a,
                  const std::pair<std::int64_t, std::int64_t>& b,
                  const std::pair<std::int64_t, std::int64_t>& c,
                  const std::pair<std::int64_t, std::int64_t>& d) {
  if (sign(cross(a, b, c)) * sign(cross(a, b, d)) < 0 && sign(cross(c, d, a)) * sign(cross(c, d, b)) < 0) {
    return true;
  }
  return isOnSegment(a, b, c) || isOnSegment(a, b, d) || isOnSegment(c, d, a) || isOnSegment(c, d, b);
}

bool isOnBorder(const Ring& ring, const std::pair<std::int64_t, std::int64_t>& p) {
  for (std::size_t i = 0; i < ring.size(); ++i) {
    if (isOnSegment(ring[i], ring[(i + 1) % ring.size()], p)) {
      return true;
    }
  }
  return false;
}

// Strictly inside: a ray to the right crosses the border an odd number of times.
bool isInside(const Ring& ring, const std::pair<std::int64_t, std::int64_t>& p) {
  if (isOnBorder(ring, p)) {
    return false;
  }
  bool inside = false;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const auto& a = ring[i];
    const auto& b = ring[(i + 1) % ring.size()];
    if ((a.second > p.second) != (b.second > p.second)) {
      const bool isLeftOfEdge = (b.second > a.second) == (cross(a, b, p) > 0);
      inside ^= isLeftOfEdge;
    }
  }
  return inside;
}

bool meetsBorder(const Ring& ring, const std::pair<std::int64_t, std::int64_t>& first,
                 const std::pair<std::int64_t, std::int64_t>& second) {
  for (std::size_t i = 0; i < ring.size(); ++i) {
    if (segmentsMeet(ring[i], ring[(i + 1) % ring.size()], first, second)) {
      return true;
    }
  }
  return false;
}

// A ring that does not cross itself: vertices on rays around the origin, at most one on each.
Ring randomStar(std::mt19937_64& random) {
  static const Ring rays = {{1, 0},   {3, 1},  {2, 1},  {1, 1},  {1, 2},   {0, 1},
                            {-1, 3},  {-1, 1}, {-3, 1}, {-1, 0}, {-2, -1}, {-1, -1},
                            {-1, -2}, {0, -1}, {1, -3}, {1, -1}, {3, -1}};
  Ring ring;
  while (ring.size() < 3) {
    ring.clear();
    for (const auto& [x, y] : rays) {
      if (random() % 3 == 0) {
        const auto stretch = static_cast<std::int64_t>(1 + random() % 4);
        ring.emplace_back(x * stretch, y * stretch);
      }
    }
    // Neighbours half a turn or more apart would put the origin outside and could make edges cross.
    for (std::size_t i = 0; i < ring.size(); ++i) {
      if (cross({0, 0}, ring[i], ring[(i + 1) % ring.size()]) <= 0) {
        ring.clear();
      }
    }
  }
  return ring;
}

TEST(SegmentAndPolygon, AgreesWithExactIntegersOnRandomRings) {
  std::mt19937_64 random(20240917);
  const auto next = [&] { return static_cast<std::int64_t>(random() % 17) - 8; };
  int numMeeting = 0;
  int numWithin = 0;
  constexpr int rounds = 4000;
  for (int round = 0; round < rounds; ++round) {
    const Ring ring = randomStar(random);
    const std::pair first{next(), next()};
    const std::pair second{next(), next()};
    const bool meets = meetsBorder(ring, first, second) || isInside(ring, first);
    const bool within = isInside(ring, first) && isInside(ring, second);
    numMeeting += meets ? 1 : 0;
    numWithin += within ? 1 : 0;
    const CounterLine segment = line({static_cast<double>(first.first), static_cast<double>(first.second)},
                                     {static_cast<double>(second.first), static_cast<double>(second.second)});
    SCOPED_TRACE("round " + std::to_string(round) + ": " + ::testing::PrintToString(ring) + " against " +
                 ::testing::PrintToString(first) + " to " + ::testing::PrintToString(second));
    const std::vector<Ring> all = writings(ring);
    for (int i = 0; i < 4; ++i) {
      const Polygon area = polygon(all[random() % all.size()]);
      ASSERT_EQ(segment.intersects(area), meets)
          << ::testing::PrintToString(area.outer().size()) << " vertices";
      ASSERT_EQ(segment.within(area), within) << ::testing::PrintToString(area.outer().size()) << " vertices";
    }
  }
  EXPECT_GT(numMeeting, rounds / 4);
  EXPECT_LT(numMeeting, rounds - rounds / 10);
  EXPECT_GT(numWithin, rounds / 100);
}

TEST(SegmentAndPolygonTrace, WithinNamesSegmentPolygonAndAnswersInThisOrder) {
  const Polygon area = polygon(square);
  const CounterLine kerb("kerb", {1.5, 1}, {3, 4}, nullptr, CounterLineDirectionType::LEFT);
  const LogCapture log;
  EXPECT_FALSE(kerb.within(area));
  EXPECT_EQ(
      log.records(),
      (std::vector<Record>{{LogLevel::Trace, "", "within:segment:'kerb':1.5:1:3:4"},
                           {LogLevel::Trace, "", "within:polygon:'kerb':(((0, 0), (0, 4), (4, 4), (4, 0)))"},
                           {LogLevel::Trace, "", "within:isWithin:'kerb':0=1:0"}}));
}

TEST(SegmentAndPolygonTrace, WithinTestsBothEndsAlways) {
  const Polygon area = polygon(square);
  const LogCapture log;
  EXPECT_FALSE(line({9, 9}, {1, 1}).within(area));
  EXPECT_FALSE(line({9, 9}, {8, 8}).within(area));
  EXPECT_TRUE(line({1, 1}, {2, 2}).within(area));
  const Texts texts = log.texts(LogLevel::Trace);
  ASSERT_EQ(texts.size(), 9U);
  EXPECT_EQ(texts[2], "within:isWithin:'L':0=0:1");
  EXPECT_EQ(texts[5], "within:isWithin:'L':0=0:0");
  EXPECT_EQ(texts[8], "within:isWithin:'L':1=1:1");
}

TEST(SegmentAndPolygonTrace, IntersectsNamesSegmentPolygonAndAnswerInThisOrder) {
  const Polygon area = polygon(square);
  const CounterLine kerb("kerb", {1.5, 1}, {3, 40}, nullptr, CounterLineDirectionType::LEFT);
  const LogCapture log;
  EXPECT_TRUE(kerb.intersects(area));
  EXPECT_FALSE(line({9, 9}, {8, 8}).intersects(area));
  EXPECT_EQ(log.records(),
            (std::vector<Record>{
                {LogLevel::Trace, "", "intersects:segment:'kerb':1.5:1:3:40"},
                {LogLevel::Trace, "", "intersects:polygon:'kerb':(((0, 0), (0, 4), (4, 4), (4, 0)))"},
                {LogLevel::Trace, "", "intersects:isIntersected:'kerb':1"},
                {LogLevel::Trace, "", "intersects:segment:'L':9:9:8:8"},
                {LogLevel::Trace, "", "intersects:polygon:'L':(((0, 0), (0, 4), (4, 4), (4, 0)))"},
                {LogLevel::Trace, "", "intersects:isIntersected:'L':0"}}));
}

TEST(SegmentAndPolygonTrace, ThePolygonStandsThereAsItWasGiven) {
  const std::vector<std::pair<Polygon, std::string>> polygons = {
      {Polygon(), "(())"},
      {polygon({{1, 2}}), "(((1, 2)))"},
      {polygon({{4, 0}, {4, 4}, {0, 4}, {0, 0}, {4, 0}}), "(((4, 0), (4, 4), (0, 4), (0, 0), (4, 0)))"},
      {polygon({{0, 0}, {0, 9}, {9, 0}}, {{{1, 1}, {1, 2}, {2, 1}}, {{3, 3}, {3, 4}, {4, 3}}}),
       "(((0, 0), (0, 9), (9, 0)), ((1, 1), (1, 2), (2, 1)), ((3, 3), (3, 4), (4, 3)))"}};
  for (const auto& [area, text] : polygons) {
    const LogCapture log;
    line({1, 1}, {2, 2}).within(area);
    line({1, 1}, {2, 2}).intersects(area);
    ASSERT_EQ(log.records().size(), 6U);
    EXPECT_EQ(log.records()[1].text, "within:polygon:'L':" + text);
    EXPECT_EQ(log.records()[4].text, "intersects:polygon:'L':" + text);
  }
}

TEST(SegmentAndPolygonTrace, TheFootprintOfAnObjectIsTracedAsItIsYielded) {
  const core::State state(polygon({{0, 0}, {4, 0}, {4, 4}, {0, 4}}));  // counterclockwise and open
  const LogCapture log;
  line({1, 1}, {2, 2}).within(state);
  line({1, 1}, {2, 2}).intersects(state);
  const Texts texts = log.texts(LogLevel::Trace);
  ASSERT_EQ(texts.size(), 6U);
  Texts vertices;
  const Polygon footprint = state.getBoostPolygon();
  for (const Point& vertex : footprint.outer()) {
    vertices.push_back("(" + std::to_string(static_cast<int>(vertex.x())) + ", " +
                       std::to_string(static_cast<int>(vertex.y())) + ")");
  }
  ASSERT_EQ(vertices.size(), 5U);
  const std::string text = "((" + vertices[0] + ", " + vertices[1] + ", " + vertices[2] + ", " + vertices[3] +
                           ", " + vertices[4] + "))";
  EXPECT_EQ(texts[1], "within:polygon:'L':" + text);
  EXPECT_EQ(texts[4], "intersects:polygon:'L':" + text);
}

TEST(SegmentAndPolygonTrace, NothingIsTracedBelowTraceLevel) {
  const LogCapture log(LogLevel::Debug);
  EXPECT_TRUE(line({1, 1}, {2, 2}).within(polygon(square)));
  EXPECT_TRUE(line({1, 1}, {2, 2}).intersects(polygon(square)));
  EXPECT_TRUE(log.records().empty());
}

}  // namespace
}  // namespace orvantis::filter::detection
