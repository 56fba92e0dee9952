#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "planar/Drawing.h"
#include "planar/ExactRegion.h"
#include "planar/RandomRings.h"
#include "planar/Region.h"

namespace orvantis::testing {
namespace {

using core::PlanarPoint;
using core::PlanarPolygon;

constexpr Scale asDrawn = {0.0, 1.0};
constexpr Scale farAway = {1.0e7, 1.0 / 1024};
constexpr Relation nothing = {false, false, false};
constexpr Relation touches = {false, true, false};

Relation relation(const PlanarPolygon& argument, const PlanarPolygon& zone) {
  return {planar::within(argument, zone), planar::intersects(argument, zone),
          planar::overlaps(argument, zone)};
}

// How often a spike turned an answer, and how often each answer came out true.
struct Tally {
  int noLongerWithin = 0;
  int newlyTouching = 0;
  int within = 0;
  int overlaps = 0;

  void add(const Relation& answer, const Relation& withoutSpikes) {
    noLongerWithin += withoutSpikes.within && !answer.within ? 1 : 0;
    newlyTouching += answer.intersects && !withoutSpikes.intersects ? 1 : 0;
    within += answer.within ? 1 : 0;
    overlaps += answer.overlaps ? 1 : 0;
  }
};

void expectEachOftenEnough(const Tally& tally, int leastOften) {
  EXPECT_GE(tally.noLongerWithin, leastOften);
  EXPECT_GE(tally.newlyTouching, leastOften);
  EXPECT_GE(tally.within, leastOften);
  EXPECT_GE(tally.overlaps, leastOften);
}

std::string describe(int number, const GridPolygon& argument, const GridPolygon& zone) {
  return "pair " + std::to_string(number) + "\n  argument " + toText(argument) + "\n  zone " + toText(zone);
}

// The same polygon, each ring written down in another way.
GridPolygon rewritten(const GridPolygon& polygon, RandomRings& random) {
  GridPolygon result;
  for (const GridRing& ring : polygon) {
    const std::vector<Writing> writings = writingsOf(ring);
    const auto last = static_cast<std::int64_t>(writings.size()) - 1;
    result.push_back(written(ring, writings[static_cast<std::size_t>(random.number(0, last))]));
  }
  return result;
}

void expectAsJudged(int number, const GridPolygon& argument, const GridPolygon& zone, RandomRings& random) {
  const Relation expected = relate(argument, zone);
  for (const Scale& scale : {asDrawn, farAway}) {
    ASSERT_EQ(relation(planar(argument, scale), planar(zone, scale)), expected)
        << describe(number, argument, zone);
  }
  const GridPolygon sameArgument = rewritten(argument, random);
  const GridPolygon sameZone = rewritten(zone, random);
  ASSERT_EQ(relation(planar(sameArgument), planar(sameZone)), expected)
      << describe(number, sameArgument, sameZone);
}

TEST(Spikes, AreBorderThatEnclosesNothing) {
  RandomRings random(50);
  Tally tally;
  for (int i = 0; i < 5000; ++i) {
    const std::int64_t size = random.number(4, 8);
    const GridRing argument = random.simple(random.number(2, 4), 6);
    const GridRing zone =
        i % 3 == 0 ? GridRing{{0, 0}, {0, size}, {size, size}, {size, 0}} : random.simple(size, 6);
    const GridPolygon spikyArgument = {i % 4 == 0 ? argument : random.withSpikes(argument, size)};
    const GridPolygon spikyZone = {i % 4 == 1 ? zone : random.withSpikes(zone, size)};
    expectAsJudged(i, spikyArgument, spikyZone, random);
    if (HasFatalFailure()) {
      return;
    }
    tally.add(relate(spikyArgument, spikyZone), relate({argument}, {zone}));
  }
  expectEachOftenEnough(tally, 150);
}

// On a grid of 3 the spikes of both often run along each other, and with the zone's own ring as argument they
// mostly do.
TEST(Spikes, ThatRunAlongTheZonesOwnStayWithinIt) {
  RandomRings random(51);
  Tally tally;
  for (int i = 0; i < 2500; ++i) {
    const GridRing ring = random.simple(3, 5);
    const GridRing argument = random.withSpikes(ring, 4);
    const GridRing zone = random.withSpikes(i % 2 == 0 ? argument : ring, 4);
    expectAsJudged(i, {argument}, {zone}, random);
    expectAsJudged(i, {zone}, {argument}, random);
    if (HasFatalFailure()) {
      return;
    }
    tally.add(relate({argument}, {zone}), {true, true, false});
  }
  EXPECT_GE(tally.within, 1200);
  EXPECT_GE(tally.noLongerWithin, 300);
}

TEST(Spikes, OfPolygonsWithHoles) {
  RandomRings random(52);
  Tally tally;
  for (int i = 0; i < 1200; ++i) {
    const GridPolygon holed = random.withHole(7, 6);
    const GridPolygon plain = {i % 3 == 0 ? holed[random.number(0, 1) == 0 ? 0 : 1] : random.simple(7, 5)};
    const GridPolygon spikyHoled = {i % 2 == 0 ? holed[0] : random.withSpikes(holed[0], 7),
                                    i % 2 == 1 ? holed[1] : random.withSpikes(holed[1], 7)};
    const GridPolygon spikyPlain = {i % 4 < 2 ? plain[0] : random.withSpikes(plain[0], 7)};
    expectAsJudged(i, spikyHoled, spikyPlain, random);
    expectAsJudged(i, spikyPlain, spikyHoled, random);
    if (HasFatalFailure()) {
      return;
    }
    tally.add(relate(spikyHoled, spikyPlain), relate(holed, plain));
    tally.add(relate(spikyPlain, spikyHoled), relate(plain, holed));
  }
  expectEachOftenEnough(tally, 30);
}

TEST(Spikes, HoldNoPointInside) {
  RandomRings random(53);
  for (int i = 0; i < 300; ++i) {
    const GridPolygon holed = random.withHole(6, 6);
    const GridPolygon polygon = {random.withSpikes(holed[0], 6), random.withSpikes(holed[1], 6)};
    for (std::int64_t x = -1; x <= 7; ++x) {
      for (std::int64_t y = -1; y <= 7; ++y) {
        const PlanarPoint point(static_cast<double>(x), static_cast<double>(y));
        ASSERT_EQ(planar::contains(planar(polygon), point), locate(polygon, {x, y}) == Place::Inside)
            << x << " " << y << " in " << toText(polygon);
      }
    }
  }
}

TEST(Spikes, MeetASegment) {
  RandomRings random(54);
  int numByASpikeAlone = 0;
  for (int i = 0; i < 4000; ++i) {
    const GridRing ring = random.simple(5, 6);
    const GridPolygon polygon = {random.withSpikes(ring, 8)};
    const GridPoint from = random.point(8);
    const GridPoint to = i % 8 == 0 ? from : random.point(8);
    const bool expected = segmentMeets(from, to, polygon);
    const auto place = [](GridPoint p) {
      return PlanarPoint(static_cast<double>(p.x), static_cast<double>(p.y));
    };
    ASSERT_EQ(planar::segmentIntersects(place(from), place(to), planar(polygon)), expected)
        << from.x << " " << from.y << " to " << to.x << " " << to.y << " and " << toText(polygon);
    numByASpikeAlone += expected && !segmentMeets(from, to, {ring}) ? 1 : 0;
  }
  EXPECT_GE(numByASpikeAlone, 300);
}

PlanarPolygon polygonOf(const PlanarPolygon::ring_type& ring) {
  PlanarPolygon polygon;
  polygon.outer() = ring;
  return polygon;
}

// An object without length and width.
TEST(Spikes, ARingThatIsOnePlaceIsAPoint) {
  const PlanarPolygon square = polygonOf({{0, 0}, {0, 4}, {4, 4}, {4, 0}});
  const PlanarPolygon holed = planar({{{0, 0}, {0, 9}, {9, 9}, {9, 0}}, {{2, 2}, {2, 7}, {7, 7}, {7, 2}}});
  const auto place = [](double x, double y) { return polygonOf({{x, y}, {x, y}, {x, y}, {x, y}, {x, y}}); };
  for (const PlanarPoint& point : {PlanarPoint(2, 2), PlanarPoint(4, 4), PlanarPoint(0, 3)}) {
    EXPECT_EQ(relation(place(point.x(), point.y()), square), touches) << point.x() << " " << point.y();
    EXPECT_EQ(relation(square, place(point.x(), point.y())), touches) << point.x() << " " << point.y();
    EXPECT_TRUE(planar::segmentIntersects(point, {9, 9}, place(point.x(), point.y())));
    EXPECT_TRUE(planar::segmentIntersects(point, point, place(point.x(), point.y())));
  }
  EXPECT_EQ(relation(place(5, 2), square), nothing);
  EXPECT_EQ(relation(square, place(5, 2)), nothing);
  EXPECT_EQ(relation(place(5, 5), holed), nothing);
  EXPECT_EQ(relation(place(7, 5), holed), touches);
  EXPECT_EQ(relation(place(8, 5), holed), touches);
  EXPECT_EQ(relation(place(5, 5), place(5, 5)), touches);
  EXPECT_EQ(relation(place(5, 5), place(5, 4)), nothing);
  EXPECT_EQ(relation(place(2, 2), polygonOf({{1, 1}, {3, 3}, {1, 1}, {3, 3}})), touches);
  EXPECT_EQ(relation(place(2, 3), polygonOf({{1, 1}, {3, 3}, {1, 1}, {3, 3}})), nothing);
  EXPECT_FALSE(planar::segmentIntersects({5, 5}, {9, 9}, place(4, 5)));
}

TEST(Spikes, AHoleThatIsOnePlaceIsAPointOfTheBorder) {
  PlanarPolygon polygon = polygonOf({{0, 0}, {0, 4}, {4, 4}, {4, 0}});
  polygon.inners().push_back({{6, 6}, {6, 6}, {6, 6}, {6, 6}});
  EXPECT_EQ(relation(polygon, polygonOf({{0, 0}, {0, 5}, {5, 5}, {5, 0}})), touches);
  EXPECT_EQ(relation(polygon, polygonOf({{0, 0}, {0, 6}, {6, 6}, {6, 0}})), (Relation{true, true, false}));
  EXPECT_EQ(relation(polygon, polygonOf({{5, 5}, {5, 7}, {7, 7}, {7, 5}})), touches);
  EXPECT_FALSE(planar::contains(polygon, {6, 6}));
}

// Not counted is a repeated first vertex alone: other vertices may repeat and are still as many.
TEST(Spikes, ARingOfTwoVerticesIsNothingAndOneThatRunsThereAndBackIsALine) {
  const PlanarPolygon square = polygonOf({{0, 0}, {0, 4}, {4, 4}, {4, 0}});
  EXPECT_EQ(relation(polygonOf({{1, 1}, {3, 3}}), square), nothing);
  EXPECT_EQ(relation(polygonOf({{1, 1}, {3, 3}, {1, 1}}), square), nothing);
  EXPECT_EQ(relation(polygonOf({{1, 1}, {3, 3}, {3, 3}}), square), touches);
  EXPECT_EQ(relation(polygonOf({{1, 1}, {1, 1}, {3, 3}}), square), touches);
  EXPECT_EQ(relation(polygonOf({{1, 1}, {3, 3}, {1, 1}, {3, 3}}), square), touches);
  EXPECT_EQ(relation(polygonOf({{1, 1}, {3, 3}, {1, 1}, {1, 1}}), square), touches);
}

// Where the ring around them bounds nothing, holes take nothing away, and their rings are border still.
TEST(Spikes, TheHoleOfARingOfSpikesAloneIsBorder) {
  PlanarPolygon polygon = polygonOf({{0, 0}, {9, 0}, {5, 0}});
  polygon.inners().push_back({{2, 2}, {2, 7}, {7, 7}, {7, 2}});
  EXPECT_EQ(relation(polygon, polygonOf({{1, 3}, {1, 4}, {3, 4}, {3, 3}})), touches);
  EXPECT_EQ(relation(polygon, polygonOf({{6, 3}, {6, 4}, {8, 4}, {8, 3}})), touches);
  EXPECT_EQ(relation(polygon, polygonOf({{3, 3}, {3, 4}, {4, 4}, {4, 3}})), nothing);
  EXPECT_EQ(relation(polygonOf({{1, 1}, {1, 8}, {8, 8}, {8, 1}}), polygon), touches);
  EXPECT_FALSE(planar::contains(polygon, {3, 3}));
}

}  // namespace
}  // namespace orvantis::testing
