#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "trigonometry/Trigonometry.h"

namespace orvantis::testing {
namespace {

using trigonometry::bearing;
using trigonometry::cosine;
using trigonometry::sine;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double least = std::numeric_limits<double>::denorm_min();
constexpr double greatest = std::numeric_limits<double>::max();

constexpr double quarter = 0x1.921fb54442d18p-1;        // pi/4
constexpr double half = 0x1.921fb54442d18p+0;           // pi/2
constexpr double threeQuarters = 0x1.2d97c7f3321d2p+1;  // 3 pi/4
constexpr double whole = 0x1.921fb54442d18p+1;          // pi

std::uint64_t bitsOf(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  return bits;
}

void expectBits(double value, double expected) {
  EXPECT_EQ(bitsOf(value), bitsOf(expected)) << value << " and " << expected;
}

TEST(SpecialValues, TheSineOfZeroKeepsItsSign) {
  expectBits(sine(0.0), 0.0);
  expectBits(sine(-0.0), -0.0);
  expectBits(cosine(0.0), 1.0);
  expectBits(cosine(-0.0), 1.0);
}

TEST(SpecialValues, WhatIsNotFiniteHasNoSineAndNoCosine) {
  for (const double angle : {nan, -nan, infinity, -infinity}) {
    expectBits(sine(angle), nan);
    expectBits(cosine(angle), nan);
  }
}

TEST(SpecialValues, TinyAnglesAreTheirSine) {
  for (const double angle : {least, 0x1p-1022, 1e-300, 1e-20, 0x1p-28, 0x1.fffffffffffffp-28}) {
    expectBits(sine(angle), angle);
    expectBits(sine(-angle), -angle);
    expectBits(cosine(angle), 1.0);
  }
  // At 2^-27 they still are, and the cosine is the first to differ.
  expectBits(sine(0x1p-27), 0x1p-27);
  expectBits(cosine(0x1p-27), 1.0);
  expectBits(cosine(0x1.6a09e667f3bcdp-27), 0x1.fffffffffffffp-1);
  expectBits(cosine(0x1.6a09e667f3bccp-27), 1.0);
  expectBits(sine(0x1p-26), 0x1p-26);
  expectBits(sine(0x1p-25), 0x1.fffffffffffffp-26);
}

// Of an angle as it is stored, which is not pi but next to it.
TEST(SpecialValues, QuartersOfATurnAreNotQuiteWhatTheyStandFor) {
  expectBits(sine(whole), 0x1.1a62633145c07p-53);
  expectBits(cosine(whole), -1.0);
  expectBits(sine(half), 1.0);
  expectBits(cosine(half), 0x1.1a62633145c07p-54);
  expectBits(sine(quarter), 0x1.6a09e667f3bccp-1);
  expectBits(cosine(quarter), 0x1.6a09e667f3bcdp-1);
  expectBits(sine(-half), -1.0);
  expectBits(cosine(2.0 * whole), 1.0);
  expectBits(sine(2.0 * whole), -0x1.1a62633145c07p-52);
  expectBits(sine(3.0 * half), -1.0);
}

TEST(SpecialValues, ASineOrACosineIsAtMostOne) {
  for (double angle = half; angle < 1e300; angle *= 5.0) {
    EXPECT_LE(std::abs(sine(angle)), 1.0) << angle;
    EXPECT_LE(std::abs(cosine(angle)), 1.0) << angle;
  }
  EXPECT_LE(std::abs(sine(greatest)), 1.0);
}

TEST(SpecialValues, BearingsAlongTheAxes) {
  for (const double size : {least, 1.0, greatest, infinity}) {
    expectBits(bearing(0.0, size), 0.0);
    expectBits(bearing(-0.0, size), -0.0);
    expectBits(bearing(0.0, -size), whole);
    expectBits(bearing(-0.0, -size), -whole);
    for (const double zero : {0.0, -0.0}) {
      expectBits(bearing(size, zero), half);
      expectBits(bearing(-size, zero), -half);
    }
  }
}

TEST(SpecialValues, BearingsOfTheOriginGoByTheSignsOfItsZeros) {
  expectBits(bearing(0.0, 0.0), 0.0);
  expectBits(bearing(-0.0, 0.0), -0.0);
  expectBits(bearing(0.0, -0.0), whole);
  expectBits(bearing(-0.0, -0.0), -whole);
}

TEST(SpecialValues, BearingsOfTheDiagonals) {
  for (const double size : {least, 0x1p-1022, 1e-3, 1.0, 1e7, greatest, infinity}) {
    expectBits(bearing(size, size), quarter);
    expectBits(bearing(-size, size), -quarter);
    expectBits(bearing(size, -size), threeQuarters);
    expectBits(bearing(-size, -size), -threeQuarters);
  }
}

TEST(SpecialValues, BearingsOfInfinities) {
  for (const double size : {0.0, least, 1.0, greatest}) {
    expectBits(bearing(size, infinity), 0.0);
    expectBits(bearing(-size, infinity), -0.0);
    expectBits(bearing(size, -infinity), whole);
    expectBits(bearing(-size, -infinity), -whole);
    expectBits(bearing(infinity, size), half);
    expectBits(bearing(infinity, -size), half);
    expectBits(bearing(-infinity, size), -half);
    expectBits(bearing(-infinity, -size), -half);
  }
}

TEST(SpecialValues, ADirectionThatIsNotANumberHasNoBearing) {
  for (const double other : {nan, 0.0, -0.0, 1.0, -1.0, infinity, -infinity}) {
    for (const double bad : {nan, -nan}) {
      expectBits(bearing(bad, other), nan);
      expectBits(bearing(other, bad), nan);
    }
  }
}

// The direction is so near to the axis that the double on it is the nearest; the sign still tells the side.
TEST(SpecialValues, BearingsNextToTheAxes) {
  expectBits(bearing(least, -1.0), whole);
  expectBits(bearing(-least, -1.0), -whole);
  expectBits(bearing(1.0, least), half);
  expectBits(bearing(1.0, -least), half);
  expectBits(bearing(greatest, least), half);
  expectBits(bearing(greatest, -least), half);
  expectBits(bearing(least, -greatest), whole);
  expectBits(bearing(least, greatest), 0.0);
  expectBits(bearing(1e-15, -1.0), 0x1.921fb54442d16p+1);
}

}  // namespace
}  // namespace orvantis::testing
