#include <cmath>
#include <cstring>
#include <ios>
#include <utility>

#include <gtest/gtest.h>
#include <mpfr.h>

#include "trigonometry/Arguments.h"
#include "trigonometry/Doubted.h"
#include "trigonometry/Exact.h"
#include "trigonometry/Mpfr.h"
#include "trigonometry/Trigonometry.h"

namespace orvantis::testing {
namespace {

using trigonometry::bearingExceeds;
using trigonometry::Binary;
using trigonometry::cosineExceeds;
using trigonometry::sineExceeds;
using trigonometry::Wide;

// All that 128 bits tell about the digit to be rounded is taken as open.
constexpr Wide allDoubt = Wide{1} << 76;

bool isSame(double a, double b) {
  return std::memcmp(&a, &b, sizeof(a)) == 0 || (std::isnan(a) && std::isnan(b));
}

TEST(Exact, SinesAndCosinesAreTheNearestWithoutTheQuickWay) {
  Arguments arguments(70);
  for (int i = 0; i < 4000; ++i) {
    const double angle = arguments.angle();
    ASSERT_TRUE(isSame(trigonometry::sine(angle, allDoubt), mpfrSine(angle))) << std::hexfloat << angle;
    ASSERT_TRUE(isSame(trigonometry::cosine(angle, allDoubt), mpfrCosine(angle))) << std::hexfloat << angle;
  }
}

TEST(Exact, BearingsAreTheNearestWithoutTheQuickWay) {
  Arguments arguments(71);
  for (int i = 0; i < 20000; ++i) {
    const auto [y, x] = arguments.direction();
    ASSERT_TRUE(isSame(trigonometry::bearing(y, x, allDoubt), mpfrBearing(y, x)))
        << std::hexfloat << y << ", " << x;
  }
}

// The first 128 digits of a value from 0 to 4 that MPFR tells, rounded down: above them by less than the
// last.
class Digits {
 public:
  Digits() { mpfr_init2(value_, 2000); }
  Digits(const Digits&) = delete;
  Digits& operator=(const Digits&) = delete;
  ~Digits() { mpfr_clear(value_); }

  mpfr_ptr get() { return value_; }

  Binary first(int numDigits) {
    mpfr_abs(value_, value_, MPFR_RNDN);
    const auto exponent = static_cast<int>(mpfr_get_exp(value_)) - numDigits;
    mpfr_div_2si(value_, value_, exponent, MPFR_RNDN);
    Wide mantissa = 0;
    for (int i = 0; i < 4; ++i) {  // in pieces that a long holds
      mpfr_div_2ui(value_, value_, 32, MPFR_RNDN);
    }
    for (int i = 0; i < 4; ++i) {
      mpfr_mul_2ui(value_, value_, 32, MPFR_RNDN);
      const unsigned long piece = mpfr_get_ui(value_, MPFR_RNDZ);
      mantissa = (mantissa << 32) | piece;
      mpfr_sub_ui(value_, value_, piece, MPFR_RNDN);
    }
    return {mantissa, exponent};
  }

 private:
  mpfr_t value_;
};

Binary binaryOf(double value) {
  int exponent = 0;
  const double fraction = std::frexp(value, &exponent);
  return {static_cast<Wide>(std::ldexp(fraction, 53)), exponent - 53};
}

// Bounds that agree with the value in 128 digits, which ask for more than the fewest words.
TEST(Exact, TellsAValueFromItsFirst128Digits) {
  Arguments arguments(72);
  for (int i = 0; i < 1500; ++i) {
    const double angle = std::abs(arguments.angle());
    if (!std::isfinite(angle) || angle < 1e-6) {
      continue;
    }
    Digits argument;
    mpfr_set_d(argument.get(), angle, MPFR_RNDN);
    Digits sine;
    mpfr_sin(sine.get(), argument.get(), MPFR_RNDN);
    const Binary sineDown = sine.first(128);
    ASSERT_TRUE(sineExceeds(binaryOf(angle), sineDown)) << std::hexfloat << angle;
    ASSERT_FALSE(sineExceeds(binaryOf(angle), {sineDown.mantissa + 1, sineDown.exponent}))
        << std::hexfloat << angle;
    Digits cosine;
    mpfr_cos(cosine.get(), argument.get(), MPFR_RNDN);
    const Binary cosineDown = cosine.first(128);
    ASSERT_TRUE(cosineExceeds(binaryOf(angle), cosineDown)) << std::hexfloat << angle;
    ASSERT_FALSE(cosineExceeds(binaryOf(angle), {cosineDown.mantissa + 1, cosineDown.exponent}))
        << std::hexfloat << angle;
  }
}

TEST(Exact, TellsABearingFromItsFirst64Digits) {
  Arguments arguments(73);
  for (int i = 0; i < 3000; ++i) {
    auto [y, x] = arguments.direction();
    y = std::abs(y);
    if (!(y > 1e-3 && y < 200.0 && std::abs(x) > 1e-3 && std::abs(x) < 200.0)) {
      continue;
    }
    Digits first;
    Digits second;
    mpfr_set_d(first.get(), y, MPFR_RNDN);
    mpfr_set_d(second.get(), x, MPFR_RNDN);
    Digits bearing;
    mpfr_atan2(bearing.get(), first.get(), second.get(), MPFR_RNDN);
    const Binary down = bearing.first(64);
    const Binary up{down.mantissa + 1, down.exponent};
    const bool isLeft = x < 0.0;
    const Binary yBelow1 = binaryOf(y / 256.0);
    const Binary xBelow1 = binaryOf(std::abs(x) / 256.0);
    ASSERT_TRUE(bearingExceeds(yBelow1, xBelow1, isLeft, down)) << std::hexfloat << y << ", " << x;
    ASSERT_FALSE(bearingExceeds(yBelow1, xBelow1, isLeft, up)) << std::hexfloat << y << ", " << x;
  }
}

// Bounds in another quadrant than the bearing.
TEST(Exact, TellsABearingFromABoundAcrossAnAxis) {
  const Binary one{1, -1};
  const Binary little{1, -60};
  EXPECT_TRUE(bearingExceeds(one, little, true, {3, -1}));
  EXPECT_FALSE(bearingExceeds(one, little, false, {51, -5}));
  EXPECT_TRUE(bearingExceeds(one, little, false, {25, -4}));
  EXPECT_FALSE(bearingExceeds(little, one, true, {51, -4}));
  EXPECT_TRUE(bearingExceeds(little, one, true, {25, -3}));
}

}  // namespace
}  // namespace orvantis::testing
