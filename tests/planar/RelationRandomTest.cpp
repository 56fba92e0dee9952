#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "planar/Drawing.h"
#include "planar/ExactRegion.h"
#include "planar/RandomRings.h"

namespace orvantis::testing {
namespace {

using filter::detection::Point;

std::string describe(int number, const GridPolygon& argument, const GridRing& zone) {
  return "pair " + std::to_string(number) + "\n  argument " + toText(argument) + "\n  zone " + toText({zone});
}

// How often each answer came out true: a family that never touches a rule would prove nothing about it.
struct Tally {
  int within = 0;
  int touches = 0;
  int overlaps = 0;
  int disjoint = 0;

  void add(const Relation& relation) {
    within += relation.within ? 1 : 0;
    touches += relation.intersects && !relation.overlaps && !relation.within ? 1 : 0;
    overlaps += relation.overlaps ? 1 : 0;
    disjoint += relation.intersects ? 0 : 1;
  }
};

void expectEachOftenEnough(const Tally& tally, int leastOften) {
  EXPECT_GE(tally.within, leastOften);
  EXPECT_GE(tally.touches, leastOften);
  EXPECT_GE(tally.overlaps, leastOften);
  EXPECT_GE(tally.disjoint, leastOften);
}

TEST(RelationRandom, SimplePolygonsOnASmallGrid) {
  RandomRings random(20);
  Tally tally;
  for (int i = 0; i < 10000; ++i) {
    const std::int64_t size = random.number(3, 9);
    const GridPolygon argument = {random.simple(random.number(2, size), 6)};
    const GridRing zone = random.simple(size, 7);
    const Relation expected = relate(argument, {zone});
    ASSERT_EQ(answers(planar(argument), points(zone)), expected) << describe(i, argument, zone);
    tally.add(expected);
  }
  expectEachOftenEnough(tally, 150);
}

TEST(RelationRandom, PolygonsOfManyVertices) {
  RandomRings random(21);
  for (int i = 0; i < 300; ++i) {
    const GridPolygon argument = {random.simple(60, 9)};
    const GridRing zone = random.simple(60, 9);
    ASSERT_EQ(answers(planar(argument), points(zone)), relate(argument, {zone}))
        << describe(i, argument, zone);
  }
}

TEST(RelationRandom, TenMillionAwayInStepsOfAThousandth) {
  constexpr Scale farAway = {1.0e7, 1.0 / 1024};
  RandomRings random(22);
  Tally tally;
  for (int i = 0; i < 4000; ++i) {
    const GridPolygon argument = {random.simple(random.number(2, 7), 6)};
    const GridRing zone = random.simple(7, 7);
    const Relation expected = relate(argument, {zone});
    ASSERT_EQ(answers(planar(argument, farAway), points(zone, farAway)), expected)
        << describe(i, argument, zone);
    tally.add(expected);
  }
  expectEachOftenEnough(tally, 50);
}

TEST(RelationRandom, HolesInTheArgumentThatMayTouchItsRing) {
  RandomRings random(23);
  Tally tally;
  for (int i = 0; i < 1000; ++i) {
    const GridPolygon argument = random.withHole(7, 6);
    const GridRing zone = i % 3 == 0 ? argument[random.number(0, 1) == 0 ? 0 : 1] : random.simple(7, 5);
    const Relation expected = relate(argument, {zone});
    ASSERT_EQ(answers(planar(argument), points(zone)), expected) << describe(i, argument, zone);
    tally.add(expected);
  }
  EXPECT_GE(tally.within, 100);
  EXPECT_GE(tally.touches, 100);
  EXPECT_GE(tally.overlaps, 100);
}

TEST(RelationRandom, RepeatedVerticesChangeNothing) {
  RandomRings random(24);
  for (int i = 0; i < 2000; ++i) {
    const GridPolygon argument = {random.simple(6, 6)};
    const GridRing zone = random.simple(6, 6);
    const GridPolygon idleArgument = {random.withRepeatedVertices(argument[0])};
    const GridRing idleZone = random.withRepeatedVertices(zone);
    ASSERT_EQ(answers(planar(idleArgument), points(idleZone)), relate(argument, {zone}))
        << describe(i, idleArgument, idleZone);
  }
}

// Turned by an angle the coordinates are rounded, so contact is a matter of luck; but it must not be one of
// the order in which the vertices are written.
TEST(RelationRandom, TurnedPolygonsAnswerTheSameHoweverTheyAreWritten) {
  RandomRings random(26);
  for (int i = 0; i < 300; ++i) {
    const GridRing argument = random.simple(6, 6);
    const GridRing zone = random.simple(6, 6);
    const double angle = static_cast<double>(random.number(1, 359)) * std::numbers::pi / 180.0;
    const auto turned = [&](const GridRing& ring) {
      std::vector<Point> result;
      for (const GridPoint& vertex : ring) {
        const auto x = static_cast<double>(vertex.x);
        const auto y = static_cast<double>(vertex.y);
        result.emplace_back(x * std::cos(angle) - y * std::sin(angle),
                            x * std::sin(angle) + y * std::cos(angle));
      }
      return result;
    };
    const auto polygon = [&](const GridRing& ring) {
      core::PlanarPolygon result;
      for (const Point& vertex : turned(ring)) {
        result.outer().emplace_back(vertex.x(), vertex.y());
      }
      return result;
    };
    const Relation expected = answers(polygon(argument), turned(zone));
    for (const Writing& writing : writingsOf(argument)) {
      ASSERT_EQ(answers(polygon(written(argument, writing)), turned(zone)), expected)
          << describe(i, {argument}, zone) << "\n  turned by " << angle;
    }
    for (const Writing& writing : writingsOf(zone)) {
      ASSERT_EQ(answers(polygon(argument), turned(written(zone, writing))), expected)
          << describe(i, {argument}, zone) << "\n  turned by " << angle;
    }
  }
}

// The footprint of an object without width: it bounds nothing, yet it is somewhere.
TEST(RelationRandom, AFlatFootprintMeetsWhatTheSegmentBetweenItsEndsMeets) {
  RandomRings random(28);
  int numMeetings = 0;
  for (int i = 0; i < 1000; ++i) {
    const GridRing zone = random.simple(7, 7);
    const GridPoint start = random.point(7);
    const GridPoint step = {random.number(-2, 2), random.number(-2, 2)};
    GridPolygon flat = {{}};
    std::int64_t first = 9;
    std::int64_t last = -9;
    for (std::int64_t n = random.number(3, 6); n > 0; --n) {
      const std::int64_t steps = random.number(-3, 3);
      first = std::min(first, steps);
      last = std::max(last, steps);
      flat[0].push_back({start.x + steps * step.x, start.y + steps * step.y});
    }
    const bool repeats = std::adjacent_find(flat[0].begin(), flat[0].end()) != flat[0].end();
    if (repeats || flat[0].front() == flat[0].back()) {
      continue;  // too few vertices, or a written one would be taken for a repeated first one
    }
    const GridPoint from = {start.x + first * step.x, start.y + first * step.y};
    const GridPoint to = {start.x + last * step.x, start.y + last * step.y};
    const bool expected = segmentMeets(from, to, {zone});
    numMeetings += expected ? 1 : 0;
    for (const Writing& writing : writingsOf(flat[0])) {
      const GridPolygon rewritten = {written(flat[0], writing)};
      ASSERT_EQ(answers(planar(rewritten), points(zone)).intersects, expected)
          << describe(i, rewritten, zone);
    }
  }
  EXPECT_GT(numMeetings, 200);
}

// Rings that cross themselves have no right answer, but the three answers never contradict each other.
TEST(RelationRandom, AnyVerticesAtAllGiveConsistentAnswers) {
  RandomRings random(27);
  for (int i = 0; i < 8000; ++i) {
    const GridPolygon argument = {random.any(5, 8)};
    const GridRing zone = random.any(5, 8);
    const Relation answer = answers(planar(argument), points(zone));
    ASSERT_TRUE(answer.intersects || (!answer.within && !answer.overlaps)) << describe(i, argument, zone);
    ASSERT_FALSE(answer.within && answer.overlaps) << describe(i, argument, zone);
  }
}

}  // namespace
}  // namespace orvantis::testing
