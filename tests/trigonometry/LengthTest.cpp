#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "trigonometry/Length.h"

namespace orvantis::testing {
namespace {

using trigonometry::length;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double least = std::numeric_limits<double>::denorm_min();
constexpr double greatest = std::numeric_limits<double>::max();

TEST(Length, IsExactWhereItsSquareIs) {
  EXPECT_EQ(length(3, 4), 5.0);
  EXPECT_EQ(length(-5, 12), 13.0);
  EXPECT_EQ(length(0, -2.5), 2.5);
  EXPECT_EQ(length(-2.5, 0), 2.5);
  EXPECT_EQ(length(-0.0, 0.0), 0.0);
}

// Their squares are beyond the doubles, or lose digits among the least of them.
TEST(Length, HoldsForTheLeastAndTheGreatestNumbers) {
  EXPECT_EQ(length(3e300, -4e300), 5e300);
  EXPECT_EQ(length(0x3p-600, 0x4p-600), 0x5p-600);
  EXPECT_EQ(length(3 * least, 4 * least), 5 * least);
  EXPECT_EQ(length(least, 0), least);
  EXPECT_EQ(length(greatest, least), greatest);
  EXPECT_EQ(length(greatest, greatest), infinity);
}

TEST(Length, OfWhatIsNotFinite) {
  EXPECT_EQ(length(infinity, nan), infinity);
  EXPECT_EQ(length(nan, -infinity), infinity);
  EXPECT_EQ(length(1, -infinity), infinity);
  EXPECT_TRUE(std::isnan(length(nan, 0)));
  EXPECT_TRUE(std::isnan(length(0, nan)));
  EXPECT_TRUE(std::isnan(length(1e300, nan)));
}

TEST(Length, IsAtMostOneUnitOfTheLastPlaceOff) {
  std::mt19937_64 random(31);
  std::uniform_real_distribution<double> mantissa(-1, 1);
  std::uniform_int_distribution<int> exponent(-1000, 1000);
  std::uniform_int_distribution<int> apart(-60, 60);
  for (int round = 0; round < 200000; ++round) {
    const int size = exponent(random);
    const double x = std::ldexp(mantissa(random), size);
    const double y = std::ldexp(mantissa(random), size + apart(random) / 2);
    const double expected = std::hypot(x, y);
    ASSERT_GE(length(x, y), std::nextafter(expected, 0.0)) << x << ' ' << y;
    ASSERT_LE(length(x, y), std::nextafter(expected, infinity)) << x << ' ' << y;
  }
}

}  // namespace
}  // namespace orvantis::testing
