#include <cmath>
#include <cstdint>
#include <cstring>
#include <ios>
#include <vector>

#include <gtest/gtest.h>

#include "trigonometry/Arguments.h"
#include "trigonometry/Mpfr.h"
#include "trigonometry/Trigonometry.h"

namespace orvantis::testing {
namespace {

using trigonometry::bearing;
using trigonometry::cosine;
using trigonometry::sine;

// For the long suite this file is built with more arguments.
#ifndef ORVANTIS_TRIGONOMETRY_ARGUMENTS
#define ORVANTIS_TRIGONOMETRY_ARGUMENTS 200000
#endif
constexpr int numArguments = ORVANTIS_TRIGONOMETRY_ARGUMENTS;

// NaN is NaN; everything else has the same bits, those of zeros included.
bool isSame(double a, double b) {
  return std::memcmp(&a, &b, sizeof(a)) == 0 || (std::isnan(a) && std::isnan(b));
}

void expectNearestSine(double angle) {
  ASSERT_TRUE(isSame(sine(angle), mpfrSine(angle))) << std::hexfloat << angle << ": " << sine(angle);
}
void expectNearestCosine(double angle) {
  ASSERT_TRUE(isSame(cosine(angle), mpfrCosine(angle))) << std::hexfloat << angle << ": " << cosine(angle);
}
void expectNearestBearing(double y, double x) {
  ASSERT_TRUE(isSame(bearing(y, x), mpfrBearing(y, x)))
      << std::hexfloat << y << ", " << x << ": " << bearing(y, x);
}

TEST(Nearest, SinesOfAnglesOfEveryKind) {
  Arguments arguments(60);
  for (int i = 0; i < numArguments && !HasFatalFailure(); ++i) {
    expectNearestSine(arguments.angle());
  }
}

TEST(Nearest, CosinesOfAnglesOfEveryKind) {
  Arguments arguments(61);
  for (int i = 0; i < numArguments && !HasFatalFailure(); ++i) {
    expectNearestCosine(arguments.angle());
  }
}

TEST(Nearest, BearingsOfDirectionsOfEveryKind) {
  Arguments arguments(62);
  for (int i = 0; i < numArguments && !HasFatalFailure(); ++i) {
    const Arguments::Direction direction = arguments.direction();
    expectNearestBearing(direction.y, direction.x);
  }
}

// Points as they are made from a bearing: their own is it, or one of its neighbours.
TEST(Nearest, BearingsOfPointsOnBearings) {
  Arguments arguments(63);
  for (int i = 0; i < numArguments / 4 && !HasFatalFailure(); ++i) {
    const double angle = arguments.angle();
    const double radius = std::abs(arguments.direction().x);
    expectNearestBearing(radius * sine(angle), radius * cosine(angle));
  }
}

TEST(Nearest, AnglesNextToMultiplesOfAQuarterTurn) {
  // The double that comes nearest to a multiple of pi/2 of all, the one of those below 100, and doubles next
  // to multiples by powers of two.
  std::vector<double> angles = {scaled(6381956970095103, 797), scaled(6411027962775774, -47)};
  for (int power = 0; power < 1020; ++power) {
    angles.push_back(std::ldexp(1.5707963267948966, power));
    angles.push_back(std::ldexp(0.7853981633974483 * 3.0, power));
  }
  for (const double angle : angles) {
    for (const double neighbour : {std::nextafter(angle, 0.0), angle, std::nextafter(angle, INFINITY)}) {
      expectNearestSine(neighbour);
      expectNearestCosine(neighbour);
      expectNearestSine(-neighbour);
      expectNearestCosine(-neighbour);
    }
  }
}

// 1 - x^2/2 is the middle between two doubles where x^2 is an odd multiple of 2^-53, and x - x^3/6 where
// x^3/6 is one of half the distance of doubles. The double nearest to such an x has a value that is 2^-50 of
// that distance from the middle, or less.
TEST(Nearest, ValuesNextToTheMiddleBetweenTwoDoubles) {
  for (std::int64_t odd = 1; odd < 4000; odd += 2) {
    expectNearestCosine(std::sqrt(scaled(odd, -53)));
    expectNearestCosine(std::nextafter(std::sqrt(scaled(odd, -53)), 0.0));
    for (const int exponent : {-22, -23, -24, -25, -26}) {
      const double angle = std::cbrt(6.0 * scaled(odd, exponent - 54));
      for (const double neighbour : {std::nextafter(angle, 0.0), angle, std::nextafter(angle, 1.0)}) {
        expectNearestSine(neighbour);
      }
    }
  }
  // The same for atan(y/x) = y/x - (y/x)^3/3, with x a power of two and with any other.
  for (std::int64_t odd = 1; odd < 4000; odd += 2) {
    for (const int exponent : {-22, -23, -24, -25, -26}) {
      const double ratio = std::cbrt(3.0 * scaled(odd, exponent - 54));
      for (const double x : {1.0, 3.0, 0.1, 1.0e-300}) {
        expectNearestBearing(ratio * x, x);
        expectNearestBearing(std::nextafter(ratio, 0.0) * x, x);
      }
    }
  }
}

// The hardest of 3 * 10^8 random arguments: 10^-8 of the distance between two doubles from the middle.
TEST(Nearest, ValuesThatASearchFoundNextToTheMiddle) {
  for (const double angle :
       {0x1.f1ce66dbd89c8p-2, 0x1.353cd2a6c7c56p-5, 0x1.9878626c04993p+0, 0x1.900b46fb19436p-2,
        0x1.6cf0b0ad0ab4ap-4, 0x1.8e680d19a04bbp-6, 0x1.9220ffdfc03acp-6, 0x1.623ca174a6148p-3,
        0x1.bac9b48378322p-6, 0x1.f0643d1289fd5p-3}) {
    expectNearestSine(angle);
  }
  for (const double angle :
       {0x1.605df93696bbbp-5, 0x1.4b9fe557b6242p-5, 0x1.28f145f24d7c1p+0, 0x1.3eb1c27e16291p+0,
        0x1.a3509f07434fap-2, 0x1.10874bd05a3fbp+1, 0x1.9ed0284d273fdp+1, 0x1.5a57b38800c3ep-3,
        0x1.f71c0601b33aep-5, 0x1.6ba8aab8d0459p-1}) {
    expectNearestCosine(angle);
  }
  const std::vector<Arguments::Direction> directions = {
      {0x1.2be83645dbcfep+5, 0x1.b4ac9522dc368p-6}, {0x1.e88f24ef8d08cp+5, 0x1.060ee2af2b08p-1},
      {0x1.f5bddcfb17ecdp+4, 0x1.b77c621971369p-5}, {0x1.d39e29397fc2ap+4, 0x1.3550085ae69b8p-6},
      {0x1.3e3bc3dfa3362p+4, 0x1.fcd7669a28aafp+0}, {0x1.38ea71335dbf2p+5, 0x1.7c5bda0f4566bp-5},
      {0x1.044f3a9fe9e5p+2, 0x1.b734d228bb2b1p-6},  {0x1.0e20bf71baeb6p+4, 0x1.0fad8ee306cd2p-5},
      {0x1.72ac4b028657bp+5, 0x1.44b4d967e9d01p-6}, {0x1.9ee348b037e77p+4, 0x1.29b80ee6b239bp-6}};
  for (const Arguments::Direction& direction : directions) {
    expectNearestBearing(direction.y, direction.x);
    expectNearestBearing(direction.y, -direction.x);
  }
}

// Each row of 16ths has its own sum, and each of its ends another rounding.
TEST(Nearest, BearingsAroundEveryThirtySecond) {
  for (int i = 0; i <= 32; ++i) {
    for (int exponent = -12; exponent <= 0; ++exponent) {
      for (const double x : {1.0, 3.0, 1.1, 7.3e-5, 1.0e300}) {
        const double y = std::ldexp(i * x / 32.0, exponent);
        for (const double near : {std::nextafter(y, 0.0), y, std::nextafter(y, INFINITY)}) {
          expectNearestBearing(near, x);
          expectNearestBearing(near, -x);
          expectNearestBearing(x, near);
          expectNearestBearing(-x, near);
        }
      }
    }
  }
}

// Where a bearing is below the normal doubles, y/x may be exactly the middle between two of them; the bearing
// is below it.
TEST(Nearest, BearingsBelowTheNormalDoubles) {
  constexpr double least = 0x1p-1074;
  EXPECT_EQ(bearing(least, 2.0), 0.0);
  EXPECT_EQ(bearing(least, std::nextafter(2.0, 0.0)), least);
  EXPECT_EQ(bearing(3.0 * least, 2.0), least);
  EXPECT_EQ(bearing(5.0 * least, 2.0), 2.0 * least);
  EXPECT_EQ(bearing(7.0 * least, 2.0), 3.0 * least);
  EXPECT_EQ(bearing(-7.0 * least, 2.0), -3.0 * least);
  EXPECT_EQ(bearing(least, 1.0), least);
  EXPECT_EQ(bearing(least, 0x1p+1023), 0.0);
  EXPECT_TRUE(std::signbit(bearing(-least, 0x1p+1023)));
  EXPECT_EQ(bearing(0x1p-1022, 1.0), 0x1p-1022);
  EXPECT_EQ(bearing(0x1.fffffffffffffp-1022, 2.0), 0x0.fffffffffffffp-1022);
  for (int y = 1; y < 40; ++y) {
    for (int x = 1; x < 40; ++x) {
      for (const int exponent : {0, 1, 10, 52, 60}) {
        expectNearestBearing(scaled(y, -1074 + exponent), scaled(x, 0));
        expectNearestBearing(scaled(y, -1074 + exponent), scaled(x, exponent));
        expectNearestBearing(scaled(y, -1000), scaled(x, 60 + exponent));
      }
    }
  }
}

}  // namespace
}  // namespace orvantis::testing
