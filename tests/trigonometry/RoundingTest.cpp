#include <cmath>

#include <gtest/gtest.h>

#include "trigonometry/Rounding.h"

namespace orvantis::testing {
namespace {

using trigonometry::Binary;
using trigonometry::Estimate;
using trigonometry::nearest;
using trigonometry::Wide;

constexpr Wide one = Wide{1} << 127;       // 1 with the exponent -127
constexpr Wide lastDigit = Wide{1} << 75;  // of a double
constexpr Wide halfDigit = lastDigit / 2;

double withoutDoubt(Wide mantissa, int exponent) {
  return nearest({mantissa, exponent, 0}, [](const Binary&) {
    ADD_FAILURE() << "nothing was in doubt";
    return false;
  });
}

TEST(Rounding, GoesToTheNearerDouble) {
  EXPECT_EQ(withoutDoubt(one, -127), 1.0);
  EXPECT_EQ(withoutDoubt(one + halfDigit - 1, -127), 1.0);
  EXPECT_EQ(withoutDoubt(one + halfDigit + 1, -127), 0x1.0000000000001p+0);
  EXPECT_EQ(withoutDoubt(one + lastDigit + halfDigit - 1, -127), 0x1.0000000000001p+0);
  EXPECT_EQ(withoutDoubt(one + lastDigit + halfDigit + 1, -127), 0x1.0000000000002p+0);
}

TEST(Rounding, CarriesIntoTheNextPowerOfTwo) {
  EXPECT_EQ(withoutDoubt(~Wide{0}, -127), 2.0);
  EXPECT_EQ(withoutDoubt(~Wide{0} - halfDigit, -127), 0x1.fffffffffffffp+0);
}

TEST(Rounding, TakesNumbersWithoutTheHighestDigit) {
  EXPECT_EQ(withoutDoubt(one >> 20, -107), 1.0);
  EXPECT_EQ(withoutDoubt(one >> 27, -127), 0x1p-27);
}

TEST(Rounding, AsksWhenTheErrorReachesTheMiddle) {
  for (const bool answer : {false, true}) {
    for (const Wide mantissa : {one + halfDigit - 5, one + halfDigit, one + halfDigit + 5}) {
      int numQuestions = 0;
      const double result = nearest({mantissa, -127, 5}, [&](const Binary& middle) {
        ++numQuestions;
        EXPECT_EQ(std::ldexp(static_cast<double>(middle.mantissa >> 1), middle.exponent + 1), 1.0);
        EXPECT_EQ(middle.mantissa & 1, 1U);
        return answer;
      });
      EXPECT_EQ(numQuestions, 1);
      EXPECT_EQ(result, answer ? 0x1.0000000000001p+0 : 1.0);
    }
    EXPECT_EQ(nearest({one + halfDigit - 6, -127, 5}, [](const Binary&) { return true; }), 1.0);
    EXPECT_EQ(nearest({one + halfDigit + 6, -127, 5}, [](const Binary&) { return false; }),
              0x1.0000000000001p+0);
  }
}

TEST(Rounding, TheErrorGrowsWithTheShift) {
  const Wide small = (one + halfDigit) >> 10;
  EXPECT_EQ(nearest({small + 3, -117, 3}, [](const Binary&) { return false; }), 1.0);
  EXPECT_EQ(nearest({small + 4, -117, 3}, [](const Binary&) { return false; }), 0x1.0000000000001p+0);
}

TEST(Rounding, DropsMoreDigitsBelowTheNormalDoubles) {
  EXPECT_EQ(withoutDoubt(one, -127 - 1022), 0x1p-1022);
  EXPECT_EQ(withoutDoubt(one, -127 - 1074), 0x1p-1074);
  EXPECT_EQ(withoutDoubt(one + one / 2 - 1, -127 - 1074), 0x1p-1074);
  EXPECT_EQ(withoutDoubt(one + one / 2 + 1, -127 - 1074), 0x1p-1073);
  EXPECT_EQ(withoutDoubt(~Wide{0}, -127 - 1023), 0x1p-1022);
  EXPECT_EQ(withoutDoubt(one + 1, -127 - 1075), 0x1p-1074);
  EXPECT_EQ(nearest({one, -127 - 1075, 0}, [](const Binary&) { return false; }), 0.0);
  EXPECT_EQ(nearest({one, -127 - 1075, 0}, [](const Binary&) { return true; }), 0x1p-1074);
  EXPECT_EQ(withoutDoubt(~Wide{0}, -127 - 1076), 0.0);
  EXPECT_EQ(withoutDoubt(one, -127 - 3000), 0.0);
}

}  // namespace
}  // namespace orvantis::testing
