#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <ios>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Sector.h>

#include "trigonometry/Trigonometry.h"

namespace orvantis::filter::detection {
namespace {

constexpr double pi = 3.141592653589793;

// What the sector says of a point that its radius lets in: the bearing itself between the stored angles.
bool isBetween(const Sector& sector, double dx, double dy) {
  double first = 0.0;
  double second = 0.0;
  double radius = 0.0;
  sector.getSector(first, second, radius);
  if (std::abs(first - second) < 0.0001) {
    return true;
  }
  const double bearing = trigonometry::bearing(dy, dx + 0.0);
  const bool isInside = std::min(first, second) <= bearing && bearing <= std::max(first, second);
  return second > first ? isInside : !isInside;
}

class Random {
 public:
  double fraction() { return std::ldexp(static_cast<double>(engine_() >> 11U), -53); }
  std::uint64_t below(std::uint64_t limit) { return engine_() % limit; }

  // Bearings and openings of every kind, half and whole turns within a few roundings among them.
  Sector sector() {
    const std::array<double, 6> firsts = {0.0, -pi, pi / 2, -pi / 4, 3 * pi / 4, 8 * fraction() - 4};
    const double first = firsts[below(firsts.size())];
    const std::array<double, 7> openings = {
        pi, pi / 2, 2 * pi * fraction(), 0.0002, 2 * pi - 0.0002, 1e-3 * fraction(), pi + 1e-15};
    double second = first + openings[below(openings.size())];
    for (std::uint64_t steps = below(4); steps > 0; --steps) {
      second = std::nextafter(second, 10.0 * fraction() - 5.0);
    }
    return {"s", first, second, std::numeric_limits<double>::infinity()};
  }

  // On a bearing or beside it by less and less, down to nothing.
  std::array<double, 2> pointNear(double bearing) {
    const double off = std::ldexp(2 * fraction() - 1, -static_cast<int>(below(64)));
    const double turned = below(3) == 0 ? bearing : bearing + off;
    const std::array<int, 7> exponents = {-1070, -1022, -500, -3, 0, 5, 1020};
    const double size = std::ldexp(1 + fraction(), exponents[below(exponents.size())]);
    std::array<double, 2> point = {size * trigonometry::cosine(turned), size * trigonometry::sine(turned)};
    for (double& coordinate : point) {
      for (std::uint64_t steps = below(4); steps > 0; --steps) {
        coordinate = std::nextafter(coordinate, 2 * fraction() - 1);
      }
    }
    return point;
  }

 private:
  std::mt19937_64 engine_{47};
};

// The bearing is only asked where the signs of two products leave room for doubt.
TEST(SectorBorder, IsWhereTheBearingsOfPointsSay) {
  Random random;
  int numInside = 0;
  int numOnABearing = 0;
  for (int i = 0; i < 4000; ++i) {
    const Sector sector = random.sector();
    double first = 0.0;
    double second = 0.0;
    double radius = 0.0;
    sector.getSector(first, second, radius);
    for (int j = 0; j < 50; ++j) {
      const auto [x, y] = random.pointNear(j % 2 == 0 ? first : second);
      const bool expected = isBetween(sector, x, y);
      ASSERT_EQ(sector.within(Point(x, y)), expected)
          << std::hexfloat << first << " to " << second << ": " << x << ", " << y;
      numInside += expected ? 1 : 0;
      const double bearing = trigonometry::bearing(y, x);
      numOnABearing += bearing == first || bearing == second ? 1 : 0;
    }
  }
  EXPECT_GT(numInside, 60000);
  EXPECT_LT(numInside, 140000);
  EXPECT_GT(numOnABearing, 20000);
}

TEST(SectorBorder, OfWhatHasNoDirectionIsTheBearingsToo) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  const std::vector<double> values = {0.0,   -0.0,   1.0,      -1.0,      5e-324, -5e-324,
                                      1e308, -1e308, infinity, -infinity, nan};
  Random random;
  for (int i = 0; i < 300; ++i) {
    const Sector sector = random.sector();
    for (const double x : values) {
      for (const double y : values) {
        ASSERT_EQ(sector.within(Point(x, y)), isBetween(sector, x, y)) << x << ", " << y;
      }
    }
  }
}

// A sector moves its border with its angles, by whichever way they came.
TEST(SectorBorder, FollowsAnAssignmentAndAMove) {
  const Sector quarter("q", 0.0, pi / 2, 10.0);
  Sector other("o", -pi / 2, 0.0, 10.0);
  EXPECT_FALSE(other.within(Point(1, 2)));
  EXPECT_TRUE(other.within(Point(1, -2)));
  other = quarter;
  EXPECT_TRUE(other.within(Point(1, 2)));
  EXPECT_FALSE(other.within(Point(1, -2)));
  const Sector moved = std::move(other);
  EXPECT_TRUE(moved.within(Point(1, 2)));
  EXPECT_FALSE(moved.within(Point(1, -2)));
  EXPECT_TRUE(quarter.makeCopy()->within(Point(1, 2)));
  EXPECT_FALSE(quarter.makeCopy()->within(Point(1, -2)));
}

}  // namespace
}  // namespace orvantis::filter::detection
