#include <cmath>
#include <memory>
#include <numbers>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>
#include <filter/monitor/ObjectMonitor.h>

#include "Frames.h"

namespace orvantis::filter::monitor::testing {
namespace {

using detection::Point;
using detection::Polygon;
using detection::Sector;
using std::numbers::pi;

bool isIn(const std::shared_ptr<Sector>& sector, const core::State& footprint) {
  ZoneDetector detector;
  detector.setZone(std::make_shared<Zone3dBase>(sector, 0.0, 2.0), 0, 0);
  return ObjectMonitor(detector).update(ms(0), {{1, footprint, 0.0, 1.0, ""}}).zones.at(0) != 0;
}

core::State boxAt(double x, double y, double length, double width) {
  return core::State(x, y, length, width, 0.0);
}

// A quarter of a disc of radius 10 to the right.
std::shared_ptr<Sector> quarter() {
  return std::make_shared<Sector>("S", -pi / 4, pi / 4, 10.0);
}

TEST(SectorContact, ALorryAcrossTheSectorIsInItWithoutACornerInIt) {
  const core::State lorry = boxAt(5.0, 0.0, 2.0, 40.0);
  ASSERT_FALSE(quarter()->within(lorry.getBoostPolygon()));
  ASSERT_FALSE(quarter()->intersects(lorry.getBoostPolygon()));
  EXPECT_TRUE(isIn(quarter(), lorry));
}

TEST(SectorContact, AFootprintOverTheWholeSectorIsInIt) {
  EXPECT_TRUE(isIn(quarter(), boxAt(0.0, 0.0, 100.0, 100.0)));
  EXPECT_TRUE(
      isIn(std::make_shared<Sector>("S", 0.0, 2 * pi, 3.0, Point(50.0, 20.0)), boxAt(50.0, 20.0, 8.0, 8.0)));
}

// A way to the side from the origin runs through corners: each may count once only.
TEST(SectorContact, AFootprintWithCornersLevelWithTheOriginIsOverIt) {
  const auto disc = std::make_shared<Sector>("S", 0.0, 2 * pi, 1.0);
  EXPECT_TRUE(isIn(disc, core::State(ring({{0, 10}, {10, 0}, {0, -10}, {-10, 0}}))));
  EXPECT_FALSE(isIn(disc, core::State(ring({{20, 10}, {30, 0}, {20, -10}, {10, 0}}))));
  EXPECT_FALSE(isIn(disc, core::State(ring({{-20, 10}, {-10, 0}, {-20, -10}, {-30, 0}}))));
  EXPECT_FALSE(isIn(disc, core::State(ring({{10, 0}, {20, 10}, {30, 0}}))));
  EXPECT_FALSE(isIn(disc, core::State(ring({{10, 0}, {30, 0}, {20, -10}}))));
}

TEST(SectorContact, AnEdgeThroughTheArcBetweenTwoCornersIsEnough) {
  EXPECT_TRUE(isIn(quarter(), boxAt(11.5, 0.0, 4.0, 40.0)));
  EXPECT_FALSE(isIn(quarter(), boxAt(12.5, 0.0, 4.0, 40.0)));
}

// Of an edge shorter than one, and through the arc with less than half of its length.
TEST(SectorContact, AShortEdgeThroughTheArcIsEnough) {
  const auto small = std::make_shared<Sector>("S", -1.2, 1.2, 0.1);
  EXPECT_TRUE(isIn(small, core::State(ring({{0.09, -0.05}, {0.09, 0.45}, {0.5, 0.2}}))));
  EXPECT_FALSE(isIn(small, core::State(ring({{0.11, -0.05}, {0.11, 0.45}, {0.5, 0.2}}))));
}

// It may round to a place outside, but the way to it is inside.
TEST(SectorContact, AnEdgeThatEndsOnTheBorderOfTheOpeningIsInIt) {
  std::mt19937_64 random(7);
  const auto between = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  for (int i = 0; i < 5000; ++i) {
    const double angle = between(0.3, 1.0);
    const auto sector = std::make_shared<Sector>("S", -0.5, angle, 10.0);
    const double distance = between(1.0, 6.0);
    const core::State wedge(
        ring({{12.0, -8.0}, {distance * std::cos(angle), distance * std::sin(angle)}, {12.0, 40.0}}));
    ASSERT_TRUE(isIn(sector, wedge)) << "case " << i << ": " << angle << ", " << distance;
  }
}

TEST(SectorContact, ACornerOnTheArcIsEnough) {
  EXPECT_TRUE(isIn(quarter(), core::State(ring({{10, 0}, {12, 1}, {12, -1}}))));
  EXPECT_FALSE(isIn(quarter(), core::State(ring({{std::nextafter(10.0, 11.0), 0}, {12, 1}, {12, -1}}))));
}

TEST(SectorContact, NextToItIsNotInIt) {
  EXPECT_FALSE(isIn(quarter(), boxAt(-5.0, 0.0, 8.0, 40.0)));
  EXPECT_FALSE(isIn(quarter(), boxAt(0.0, 8.0, 6.0, 4.0)));
  EXPECT_TRUE(isIn(quarter(), boxAt(0.0, 8.0, 60.0, 4.0)));
}

TEST(SectorContact, ASectorThroughTheMinusXAxisIsTheSmallOpening) {
  const auto behind = std::make_shared<Sector>("S", 3 * pi / 4, -3 * pi / 4, 10.0);
  EXPECT_TRUE(isIn(behind, boxAt(-5.0, 0.0, 2.0, 40.0)));
  EXPECT_FALSE(isIn(behind, boxAt(5.0, 0.0, 2.0, 40.0)));
}

TEST(SectorContact, APointObjectIsWhereThePointIs) {
  EXPECT_TRUE(isIn(quarter(), boxAt(5.0, 0.0, 0.0, 0.0)));
  EXPECT_FALSE(isIn(quarter(), boxAt(-5.0, 0.0, 0.0, 0.0)));
}

// The sector as a polygon of many short chords; with its arc on the circle or just outside it.
Polygon fan(double minAngle, double opening, double radius, const Point& origin, bool isOutside) {
  constexpr int chords = 360;
  const double step = opening / chords;
  const double reach = isOutside ? radius / std::cos(step / 2) : radius;
  std::vector<Point> vertices;
  if (opening < 2 * pi) {
    vertices.push_back(origin);
  }
  for (int i = 0; i <= chords; ++i) {
    vertices.emplace_back(origin.x() + reach * std::cos(minAngle + i * step),
                          origin.y() + reach * std::sin(minAngle + i * step));
  }
  return Polygon("fan", vertices);
}

TEST(SectorContact, AgreesWithTheSectorAsAPolygon) {
  std::mt19937_64 random(31);
  const auto between = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  int hits = 0;
  int undecided = 0;
  for (int i = 0; i < 1000; ++i) {
    const double minAngle = between(-pi, pi);
    const double opening = i % 7 == 0 ? 2 * pi : between(0.05, 6.0);
    const double radius = between(1.0, 20.0);
    const Point origin(between(-5.0, 5.0), between(-5.0, 5.0));
    const core::State footprint(between(-25.0, 25.0), between(-25.0, 25.0), between(0.1, 40.0),
                                between(0.1, 6.0), between(-pi, pi));
    const auto sector = std::make_shared<Sector>("S", minAngle, minAngle + opening, radius, origin);
    const bool meetsInner =
        fan(minAngle, opening, radius, origin, false).intersects(footprint.getBoostPolygon());
    const bool meetsOuter =
        fan(minAngle, opening, radius, origin, true).intersects(footprint.getBoostPolygon());
    if (meetsInner != meetsOuter) {
      ++undecided;
      continue;
    }
    hits += meetsInner ? 1 : 0;
    ASSERT_EQ(isIn(sector, footprint), meetsInner)
        << "case " << i << ": angles " << minAngle << " + " << opening << ", radius " << radius
        << ", origin (" << origin.x() << ", " << origin.y() << "), footprint "
        << footprint.getBoostPolygon().outer()[0].x() << ", " << footprint.getBoostPolygon().outer()[0].y();
  }
  EXPECT_GT(hits, 200);
  EXPECT_LT(hits, 800);
  EXPECT_LT(undecided, 10);
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
