#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "planar/Drawing.h"
#include "planar/ExactRegion.h"
#include "planar/RandomRings.h"
#include "planar/Region.h"
#include "support/AllocationCounter.h"

namespace orvantis::testing {
namespace {

using core::PlanarPoint;
using core::PlanarPolygon;

PlanarPoint place(GridPoint point, const Scale& scale = {}) {
  return {scale.offset + scale.step * static_cast<double>(point.x),
          scale.offset + scale.step * static_cast<double>(point.y)};
}

// Every place of the grid, a step beyond the polygon's own on all sides.
void expectPointsAsJudged(const GridPolygon& polygon, std::int64_t size, const Scale& scale) {
  const PlanarPolygon drawn = planar(polygon, scale);
  for (std::int64_t x = -1; x <= size + 1; ++x) {
    for (std::int64_t y = -1; y <= size + 1; ++y) {
      ASSERT_EQ(planar::contains(drawn, place({x, y}, scale)), locate(polygon, {x, y}) == Place::Inside)
          << x << " " << y << " in " << toText(polygon);
    }
  }
}

TEST(RegionContains, OnlyWhatIsStrictlyInside) {
  RandomRings random(30);
  for (int i = 0; i < 150; ++i) {
    GridPolygon polygon = {random.simple(12, 9)};
    for (const Writing& writing : {Writing{}, Writing{1, true, false}, Writing{2, false, true}}) {
      expectPointsAsJudged({written(polygon[0], writing)}, 12, {});
    }
    expectPointsAsJudged(polygon, 12, {1.0e7, 1.0 / 1024});
    expectPointsAsJudged(polygon, 12, {-3.0, 0.25});
  }
}

TEST(RegionContains, NothingInOrOnAHole) {
  RandomRings random(31);
  for (int i = 0; i < 150; ++i) {
    const GridPolygon polygon = random.withHole(9, 7);
    expectPointsAsJudged(polygon, 9, {});
    expectPointsAsJudged({written(polygon[0], {0, true, true}), written(polygon[1], {1, false, true})}, 9,
                         {});
  }
}

TEST(RegionContains, ManyVertices) {
  // A saw of 100 teeth.
  GridRing saw;
  for (std::int64_t i = 0; i < 100; ++i) {
    saw.insert(saw.end(), {{2 * i, 0}, {2 * i + 1, 50}});
  }
  saw.insert(saw.end(), {{200, 0}, {200, -1}, {0, -1}});
  ASSERT_TRUE(isSimple(saw));
  const PlanarPolygon drawn = planar({saw});
  for (std::int64_t x = -1; x <= 201; ++x) {
    for (const std::int64_t y : {-2, -1, 0, 1, 25, 49, 50, 51}) {
      ASSERT_EQ(planar::contains(drawn, place({x, y})), locate({saw}, {x, y}) == Place::Inside)
          << x << " " << y;
    }
  }
}

TEST(RegionContains, AHoleOfFewerThanThreeVerticesIsNone) {
  PlanarPolygon polygon = planar({{{0, 0}, {0, 4}, {4, 4}, {4, 0}}});
  polygon.inners().resize(3);
  polygon.inners()[1] = {{2, 2}};
  polygon.inners()[2] = {{1, 1}, {3, 3}, {1, 1}};
  EXPECT_TRUE(planar::contains(polygon, {2, 2}));
  EXPECT_TRUE(planar::contains(polygon, {1, 3}));
}

TEST(RegionContains, AllocatesNothing) {
  const PlanarPolygon polygon = planar({{{0, 0}, {0, 9}, {9, 9}, {9, 0}}, {{2, 2}, {2, 3}, {3, 3}}});
  const AllocationCounter counter;
  const bool inside = planar::contains(polygon, {1, 1});
  const bool inHole = planar::contains(polygon, {2.1, 2.5});
  const bool outside = planar::contains(polygon, {11, 1});
  EXPECT_EQ(counter.count(), 0U);
  EXPECT_TRUE(inside);
  EXPECT_FALSE(inHole);
  EXPECT_FALSE(outside);
}

TEST(RegionSegment, MeetsWhatItTouchesCrossesOrLiesIn) {
  RandomRings random(32);
  int numMeetings = 0;
  for (int i = 0; i < 1500; ++i) {
    const GridPolygon polygon = i % 3 == 0 ? random.withHole(8, 6) : GridPolygon{random.simple(8, 7)};
    const GridPoint first = random.point(10);
    const GridPoint second = random.point(10);
    const bool expected = segmentMeets(first, second, polygon);
    numMeetings += expected ? 1 : 0;
    for (const Writing& writing : {Writing{}, Writing{1, true, false}, Writing{2, false, true}}) {
      GridPolygon rewritten = polygon;
      for (GridRing& ring : rewritten) {
        ring = written(ring, writing);
      }
      ASSERT_EQ(planar::segmentIntersects(place(first), place(second), planar(rewritten)), expected)
          << first.x << " " << first.y << " to " << second.x << " " << second.y << " and "
          << toText(rewritten);
    }
  }
  EXPECT_GT(numMeetings, 300);
  EXPECT_LT(numMeetings, 1200);
}

TEST(RegionSegment, AFootprintWithoutVerticesMeetsNoSegment) {
  EXPECT_FALSE(planar::segmentIntersects({0, 0}, {1, 1}, PlanarPolygon()));
  EXPECT_FALSE(planar::segmentIntersects({0, 0}, {1, 1}, planar({{{0, 0}, {1, 1}}})));
}

TEST(RegionOverlaps, IsTheSameWhicheverOfTheTwoHasTheHole) {
  RandomRings random(34);
  std::vector<std::pair<GridPolygon, GridRing>> pairs = {
      {{{{0, 0}, {0, 9}, {9, 9}, {9, 0}}, {{4, 0}, {2, 4}, {6, 4}}}, {{0, 0}, {9, 0}, {9, -3}}},
      {{{{0, 4}, {6, 6}, {5, 3}, {4, 0}}, {{5, 5}, {2, 2}, {4, 2}}}, {{0, 0}, {0, 4}, {4, 0}}}};
  for (int i = 0; i < 300; ++i) {
    const GridPolygon holed = random.withHole(7, 6);
    pairs.emplace_back(holed, random.simple(7, 5));
  }
  for (const auto& [holed, plain] : pairs) {
    const bool expected = relate(holed, {plain}).overlaps;
    EXPECT_EQ(planar::overlaps(planar(holed), planar({plain})), expected)
        << toText(holed) << " and " << toText({plain});
    EXPECT_EQ(planar::overlaps(planar({plain}), planar(holed)), expected)
        << toText(holed) << " and " << toText({plain});
  }
}

TEST(RegionOverlaps, IsAnsweredWhenBothHaveHoles) {
  const auto holed = [](std::int64_t x, std::int64_t holeX) {
    return planar(
        {{{x, 0}, {x, 9}, {x + 9, 9}, {x + 9, 0}}, {{holeX, 2}, {holeX, 4}, {holeX + 2, 4}, {holeX + 2, 2}}});
  };
  EXPECT_TRUE(planar::overlaps(holed(0, 1), holed(6, 12)));
  EXPECT_TRUE(planar::overlaps(holed(0, 1), holed(0, 5)));  // each has the other's hole outside
  EXPECT_FALSE(planar::overlaps(holed(0, 1), holed(0, 1)));
  EXPECT_FALSE(planar::overlaps(holed(0, 1), holed(9, 12)));
}

TEST(RegionArea, IsTheSignedSumOfAllRings) {
  RandomRings random(33);
  for (int i = 0; i < 150; ++i) {
    GridPolygon polygon = random.withHole(9, 7);
    polygon[1] = written(polygon[1], {0, random.number(0, 1) == 1, random.number(0, 1) == 1});
    const std::int64_t doubled = doubledArea(polygon[0]) + doubledArea(polygon[1]);
    ASSERT_EQ(planar::signedArea(planar(polygon)), static_cast<double>(doubled) / 2) << toText(polygon);
  }
}

TEST(RegionArea, OfARingOfFewerThanThreeVerticesIsZero) {
  EXPECT_EQ(planar::signedArea(PlanarPolygon()), 0.0);
  EXPECT_EQ(planar::signedArea(planar({{{1, 2}, {3, 9}}})), 0.0);
  EXPECT_EQ(planar::signedArea(planar({{{0, 0}, {0, 4}, {4, 0}}, {{1, 2}, {3, 9}}})), 8.0);
}

}  // namespace
}  // namespace orvantis::testing
