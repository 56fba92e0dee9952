#include <cmath>
#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

#include <filter/monitor/LineSighting.h>

#include "Frames.h"

namespace orvantis::filter::monitor::testing {
namespace {

using Side = detection::CounterLineDirectionType;

// From (0, 0) to (3, 4): left of it is up and to the left.
detection::CounterLine slope() {
  return {"L", {0.0, 0.0}, {3.0, 4.0}, nullptr, Side::LEFT};
}

core::State boxAt(double x, double y) {
  return core::State(x, y, 2.0, 1.0, 0.0);
}

TEST(LineSightings, TellSideClearnessAndSignedDistanceOfTheReferencePoint) {
  const auto left = lineSighting(slope(), boxAt(-4.0, 3.0));
  ASSERT_TRUE(left.has_value());
  EXPECT_EQ(left->side, Side::LEFT);
  EXPECT_TRUE(left->isClear);
  EXPECT_DOUBLE_EQ(left->distance, 5.0);
  EXPECT_EQ(left->reference.x(), -4.0);
  EXPECT_EQ(left->reference.y(), 3.0);
  const auto right = lineSighting(slope(), boxAt(4.0, -3.0));
  EXPECT_EQ(right->side, Side::RIGHT);
  EXPECT_TRUE(right->isClear);
  EXPECT_DOUBLE_EQ(right->distance, -5.0);
}

TEST(LineSightings, OfWhatReachesOverTheLineAreNotClear) {
  const auto sighting = lineSighting(slope(), boxAt(-0.4, 0.3));
  EXPECT_EQ(sighting->side, Side::LEFT);
  EXPECT_FALSE(sighting->isClear);
  EXPECT_DOUBLE_EQ(sighting->distance, 0.5);
}

TEST(LineSightings, ExactlyOnTheLineAreOnIt) {
  const auto sighting = lineSighting(slope(), boxAt(6.0, 8.0));
  EXPECT_EQ(sighting->side, Side::ON);
  EXPECT_FALSE(sighting->isClear);
  EXPECT_EQ(sighting->distance, 0.0);
  EXPECT_FALSE(std::signbit(sighting->distance));
}

TEST(LineSightings, KeepTheExactSideWhereTheDistanceIsRounded) {
  // The cross product is -2^-53 and rounds to zero.
  const detection::CounterLine line("L", {0.0, 0.0}, {1.0, 1.0 + 0x1p-26}, nullptr, Side::LEFT);
  const auto sighting = lineSighting(line, core::State(1.0 + 0x1p-26, 1.0 + 0x1p-25, 0.0, 0.0, 0.0));
  ASSERT_TRUE(sighting.has_value());
  EXPECT_EQ(sighting->side, Side::RIGHT);
  EXPECT_LE(sighting->distance, 0.0);
  EXPECT_TRUE(std::signbit(sighting->distance));
}

TEST(LineSightings, NeedTheClearanceToBeClear) {
  EXPECT_TRUE(lineSighting(slope(), core::State(-4.0, 3.0, 0.0, 0.0, 0.0), 5.0)->isClear);
  EXPECT_FALSE(lineSighting(slope(), core::State(-4.0, 3.0, 0.0, 0.0, 0.0), 5.1)->isClear);
  for (const double refused :
       {-0.1, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_THROW(lineSighting(slope(), boxAt(0.0, 0.0), refused), std::invalid_argument);
  }
}

TEST(LineSightings, ThereAreNoneOfALineWithoutSidesOrAFootprintWithoutAPlace) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(lineSighting(slope(), boxAt(nan, 0.0)).has_value());
  EXPECT_FALSE(lineSighting(slope(), core::State(PlanarPolygon())).has_value());
  EXPECT_FALSE(lineSighting(detection::CounterLine(), boxAt(1.0, 0.0)).has_value());
  const detection::CounterLine notFinite("L", {0.0, 0.0}, {nan, 4.0}, nullptr, Side::LEFT);
  EXPECT_FALSE(lineSighting(notFinite, boxAt(1.0, 0.0)).has_value());
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
