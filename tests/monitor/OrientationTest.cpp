#include <cstdint>
#include <random>

#include <gtest/gtest.h>

#include "monitor/Orientation.h"

namespace orvantis::filter::monitor {
namespace {

using core::PlanarPoint;

struct GridPoint {
  std::int64_t x;
  std::int64_t y;
};

__extension__ using Wide = __int128;

int exactSign(const GridPoint& a, const GridPoint& b, const GridPoint& c) {
  const Wide cross = Wide(b.x - a.x) * (c.y - a.y) - Wide(b.y - a.y) * (c.x - a.x);
  return (cross > 0) - (cross < 0);
}

PlanarPoint scaled(const GridPoint& point, double unit) {
  return {static_cast<double>(point.x) * unit, static_cast<double>(point.y) * unit};
}

TEST(Orientation, LeftIsPositiveAndRightNegative) {
  EXPECT_EQ(orientation({0, 0}, {1, 0}, {0, 1}), 1);
  EXPECT_EQ(orientation({0, 0}, {1, 0}, {0, -1}), -1);
  EXPECT_EQ(orientation({0, 0}, {1, 0}, {7, 0}), 0);
  EXPECT_EQ(orientation({3, 4}, {3, 4}, {7, 0}), 0);
}

// Points on the line, and one step of the grid off it: what rounding gets wrong.
TEST(Orientation, IsExactNextToTheLine) {
  std::mt19937_64 random(20240501);
  std::uniform_int_distribution<std::int64_t> coordinate(-(std::int64_t{1} << 51), std::int64_t{1} << 51);
  std::uniform_int_distribution<std::int64_t> direction(-1000, 1000);
  std::uniform_int_distribution<std::int64_t> times(-(std::int64_t{1} << 40), std::int64_t{1} << 40);
  std::uniform_int_distribution<int> off(-1, 1);
  int onLine = 0;
  for (int i = 0; i < 100'000; ++i) {
    const GridPoint a{coordinate(random), coordinate(random)};
    const GridPoint step{direction(random), direction(random)};
    const std::int64_t toB = times(random);
    const std::int64_t toC = times(random);
    const GridPoint b{a.x + toB * step.x, a.y + toB * step.y};
    const GridPoint c{a.x + toC * step.x + off(random), a.y + toC * step.y + off(random)};
    const double unit = i % 2 == 0 ? 1.0 : 0x1p-40;
    const int expected = exactSign(a, b, c);
    onLine += expected == 0 ? 1 : 0;
    const auto [p, q, r] = std::tuple(scaled(a, unit), scaled(b, unit), scaled(c, unit));
    ASSERT_EQ(orientation(p, q, r), expected) << "case " << i << ": (" << a.x << ", " << a.y << ") (" << b.x
                                              << ", " << b.y << ") (" << c.x << ", " << c.y << ")";
    ASSERT_EQ(orientation(q, p, r), -expected) << "case " << i;
    ASSERT_EQ(orientation(q, r, p), expected) << "case " << i;
  }
  EXPECT_GT(onLine, 5'000);
}

// A small point against two large ones: here the differences of the coordinates are rounded too.
TEST(Orientation, IsExactWhereDifferencesAreRounded) {
  constexpr std::int64_t one = std::int64_t{1} << 53;
  const GridPoint b{12 * one, 12 * one};
  const GridPoint c{24 * one, 24 * one};
  for (std::int64_t x = 0; x < 128; ++x) {
    for (std::int64_t y = 0; y < 128; ++y) {
      const GridPoint a{one / 2 + x, one / 2 + y};
      const auto [p, q, r] = std::tuple(scaled(a, 0x1p-53), scaled(b, 0x1p-53), scaled(c, 0x1p-53));
      ASSERT_EQ(orientation(p, q, r), exactSign(a, b, c)) << x << ", " << y;
      ASSERT_EQ(orientation(q, p, r), exactSign(b, a, c)) << x << ", " << y;
      ASSERT_EQ(orientation(q, r, p), exactSign(b, c, a)) << x << ", " << y;
    }
  }
}

TEST(Orientation, TheCrossProductIsTheAreaOfTheParallelogram) {
  EXPECT_EQ(crossProduct({1, 1}, {4, 1}, {2, 3}), 6.0);
  EXPECT_EQ(crossProduct({4, 1}, {1, 1}, {2, 3}), -6.0);
}

TEST(Distance, IsThatOfPythagorasWithoutOverflowOrUnderflow) {
  EXPECT_EQ(distance({1.0, 2.0}, {4.0, -2.0}), 5.0);
  EXPECT_EQ(distance({0.0, 0.0}, {-5.0, 12.0}), 13.0);
  EXPECT_EQ(distance({1.0, 2.0}, {1.0, 2.0}), 0.0);
  EXPECT_EQ(distance({0.0, 0.0}, {0x3p1000, 0x4p1000}), 0x5p1000);
  EXPECT_EQ(distance({0.0, 0.0}, {0x3p-1060, 0x4p-1060}), 0x5p-1060);
  EXPECT_EQ(distance({0.0, 0.0}, {0x1.8p1023, 0.0}), 0x1.8p1023);
  EXPECT_EQ(distance({0.0, 0.0}, {1.0, 0x1p-1070}), 1.0);
  // The larger half of the range: the sum of both differences is beyond it, their distance is not.
  EXPECT_EQ(distance({0.0, 0.0}, {0x3p1021, 0x4p1021}), 0x5p1021);
}

TEST(Distance, IsNotFiniteWhereACoordinateIsNot) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double inf = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(std::isnan(distance({nan, 0.0}, {1.0, 1.0})));
  EXPECT_TRUE(std::isnan(distance({0.0, 0.0}, {1.0, nan})));
  EXPECT_EQ(distance({0.0, 0.0}, {-inf, 1.0}), inf);
  EXPECT_EQ(distance({0.0, 0.0}, {1.0, inf}), inf);
}

}  // namespace
}  // namespace orvantis::filter::monitor
