#include <algorithm>
#include <cmath>
#include <limits>
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
using Limits = std::numeric_limits<double>;

const GridPolygon square = {{{0, 0}, {0, 4}, {4, 4}, {4, 0}}};
constexpr Relation nothing = {false, false, false};

Relation relation(const PlanarPolygon& argument, const PlanarPolygon& zone) {
  return {planar::within(argument, zone), planar::intersects(argument, zone),
          planar::overlaps(argument, zone)};
}

PlanarPolygon scaledSquare(double low, double high) {
  PlanarPolygon polygon;
  polygon.outer() = {{low, low}, {low, high}, {high, high}, {high, low}};
  return polygon;
}

bool isFinite(const PlanarPolygon& polygon) {
  return std::all_of(polygon.outer().begin(), polygon.outer().end(), [](const PlanarPoint& vertex) {
    return std::isfinite(vertex.x()) && std::isfinite(vertex.y());
  });
}

TEST(RegionLimits, ARingWithACoordinateThatIsNotFiniteBoundsNoRegion) {
  const PlanarPolygon good = planar(square);
  for (const double bad : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
    for (std::size_t vertex = 0; vertex < 4; ++vertex) {
      for (const bool isX : {true, false}) {
        PlanarPolygon polygon = good;
        PlanarPoint& spoilt = polygon.outer()[vertex];
        spoilt = isX ? PlanarPoint(bad, spoilt.y()) : PlanarPoint(spoilt.x(), bad);
        const std::string what = std::to_string(bad) + " in vertex " + std::to_string(vertex);
        EXPECT_EQ(relation(polygon, good), nothing) << what;
        EXPECT_EQ(relation(good, polygon), nothing) << what;
        EXPECT_EQ(relation(polygon, polygon), nothing) << what;
        EXPECT_FALSE(planar::segmentIntersects({1, 1}, {2, 2}, polygon)) << what;
        for (const PlanarPoint& point :
             {PlanarPoint(1, 1), PlanarPoint(3, 1), PlanarPoint(1, 3), PlanarPoint(3, 3)}) {
          EXPECT_FALSE(planar::contains(polygon, point)) << what;
        }
      }
    }
  }
}

TEST(RegionLimits, AHoleWithACoordinateThatIsNotFiniteIsNone) {
  for (const double bad : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
    PlanarPolygon polygon = planar({{{0, 0}, {0, 9}, {9, 9}, {9, 0}}, {{2, 2}, {2, 7}, {7, 7}, {7, 2}}});
    polygon.inners()[0][2] = PlanarPoint(7, bad);
    EXPECT_TRUE(planar::contains(polygon, {3, 3})) << bad;
    EXPECT_EQ(relation(polygon, planar({{{3, 3}, {3, 4}, {4, 4}, {4, 3}}})), (Relation{false, true, false}))
        << bad;
  }
}

TEST(RegionLimits, APointThatIsNotFiniteIsNowhere) {
  const PlanarPolygon polygon = planar(square);
  for (const double bad : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
    for (const double other : {1.0, 0.0, 4.0, bad}) {
      EXPECT_FALSE(planar::contains(polygon, {bad, other})) << bad << " " << other;
      EXPECT_FALSE(planar::contains(polygon, {other, bad})) << bad << " " << other;
    }
  }
}

TEST(RegionLimits, ASegmentWithAnEndThatIsNotFiniteMeetsNothing) {
  const PlanarPolygon polygon = planar(square);
  for (const double bad : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
    EXPECT_FALSE(planar::segmentIntersects({bad, 1}, {2, 2}, polygon)) << bad;
    EXPECT_FALSE(planar::segmentIntersects({2, 2}, {1, bad}, polygon)) << bad;
  }
}

TEST(RegionLimits, MinusZeroIsZero) {
  PlanarPolygon negative;
  negative.outer() = {{-0.0, -0.0}, {-0.0, 4.0}, {4.0, 4.0}, {4.0, -0.0}, {0.0, 0.0}};
  EXPECT_EQ(relation(negative, planar(square)), (Relation{true, true, false}));
  EXPECT_EQ(relation(planar(square), negative), (Relation{true, true, false}));
  EXPECT_FALSE(planar::contains(negative, {0.0, 1.0}));
  EXPECT_FALSE(planar::contains(planar(square), {-0.0, 1.0}));
  EXPECT_TRUE(planar::contains(scaledSquare(-1, 1), {-0.0, -0.0}));
  EXPECT_EQ(planar::signedArea(negative), 16.0);
}

TEST(RegionLimits, HugeSquaresAnswerAsSmallOnes) {
  for (const double size : {1e100, 1e154, 1e200, 1e308, Limits::max()}) {
    const PlanarPolygon zone = scaledSquare(-size, size);
    EXPECT_EQ(relation(zone, zone), (Relation{true, true, false})) << size;
    EXPECT_EQ(relation(scaledSquare(-size / 2, size / 2), zone), (Relation{true, true, false})) << size;
    EXPECT_EQ(relation(planar(square), zone), (Relation{true, true, false})) << size;
    EXPECT_EQ(relation(zone, scaledSquare(-size / 2, size / 2)), (Relation{false, true, false})) << size;
    EXPECT_EQ(relation(scaledSquare(size / 4, size / 2), scaledSquare(-size, -size / 2)), nothing) << size;
    EXPECT_EQ(relation(scaledSquare(-size / 2, size), scaledSquare(-size, size / 2)),
              (Relation{false, true, true}))
        << size;
    EXPECT_TRUE(planar::contains(zone, {0, 0})) << size;
    EXPECT_TRUE(planar::contains(zone, {size / 2, -size / 4})) << size;
    EXPECT_FALSE(planar::contains(zone, {size, 0})) << size;
    EXPECT_FALSE(planar::contains(scaledSquare(-size / 2, size / 2), {size, 0})) << size;
    EXPECT_TRUE(planar::segmentIntersects({0, 0}, {1, 1}, zone)) << size;
  }
  EXPECT_EQ(planar::signedArea(scaledSquare(0, 1e153)), 1e306);
  EXPECT_EQ(planar::signedArea(scaledSquare(0, 1e200)), Limits::infinity());
}

TEST(RegionLimits, ARepeatedFirstVertexKeepsTheAreaOfAHugeRing) {
  PlanarPolygon polygon;
  polygon.outer() = {{1e308, 0}, {0, -0.25}, {0, 0.25}};
  EXPECT_EQ(planar::signedArea(polygon), 2.5e307);
  polygon.outer().push_back(polygon.outer().front());
  EXPECT_EQ(planar::signedArea(polygon), 2.5e307);
}

TEST(RegionLimits, WhatIsCloserThanAnEpsilonToAnEdgeIsOnIt) {
  const PlanarPolygon unit = scaledSquare(0, 1);
  for (const double tiny : {Limits::denorm_min(), Limits::min(), 1e-300, 1e-100, 1e-17}) {
    EXPECT_FALSE(planar::contains(unit, {tiny, 0.5})) << tiny;
    EXPECT_FALSE(planar::contains(unit, {0.5, tiny})) << tiny;
    EXPECT_EQ(relation(scaledSquare(tiny, 1), unit), (Relation{true, true, false})) << tiny;
    EXPECT_TRUE(planar::intersects(scaledSquare(-tiny, 1), unit)) << tiny;
    EXPECT_FALSE(planar::overlaps(scaledSquare(-tiny, 1), unit)) << tiny;
    EXPECT_EQ(planar::signedArea(scaledSquare(0, tiny)), tiny * tiny) << tiny;
  }
  EXPECT_TRUE(planar::contains(unit, {1e-15, 0.5}));
  EXPECT_EQ(relation(scaledSquare(-1e-15, 1), unit), (Relation{false, true, false}));
}

// Numbers from one end of the range to the other in one ring: no right answer is asked for, only one that
// comes back.
TEST(RegionLimits, AnyMixtureOfSizesGetsAnAnswer) {
  const std::vector<double> values = {0.0,
                                      -0.0,
                                      Limits::denorm_min(),
                                      -Limits::min(),
                                      1e-300,
                                      1e-17,
                                      1.0,
                                      -1.0,
                                      1e7,
                                      1e150,
                                      -1e154,
                                      1e200,
                                      1e308,
                                      -1e308,
                                      Limits::max(),
                                      -Limits::max(),
                                      Limits::infinity(),
                                      Limits::quiet_NaN()};
  RandomRings random(40);
  const auto value = [&] {
    return values[static_cast<std::size_t>(random.number(0, static_cast<std::int64_t>(values.size()) - 1))];
  };
  const auto ring = [&] {
    PlanarPolygon polygon;
    for (std::int64_t i = random.number(0, 7); i > 0; --i) {
      const double x = value();
      polygon.outer().emplace_back(x, value());
    }
    return polygon;
  };
  for (int i = 0; i < 20000; ++i) {
    const PlanarPolygon a = ring();
    const PlanarPolygon b = ring();
    const Relation answer = relation(a, b);
    if (!isFinite(a) || !isFinite(b)) {
      EXPECT_EQ(answer, nothing) << i;
    }
    const double x = value();
    const double y = value();
    if (planar::contains(a, {x, y})) {
      EXPECT_TRUE(std::isfinite(x) && std::isfinite(y)) << i;
    }
    if (planar::segmentIntersects({x, y}, {y, x}, a)) {
      EXPECT_TRUE(std::isfinite(x) && std::isfinite(y)) << i;
    }
  }
}

}  // namespace
}  // namespace orvantis::testing
