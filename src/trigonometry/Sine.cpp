#include <cstddef>
#include <limits>

#include "trigonometry/Doubted.h"
#include "trigonometry/Exact.h"
#include "trigonometry/QuarterTurns.h"
#include "trigonometry/Series.h"
#include "trigonometry/Trigonometry.h"

namespace orvantis::trigonometry {
namespace {

// 1/3!, 1/5!, ... for the sine, 1/2!, 1/4!, ... for the cosine.
constexpr Factors inverseFactorials(unsigned first) {
  Factors factors{};
  Wide factorial = first == 3 ? 6 : 2;
  for (std::size_t i = 0; i < factors.size(); ++i) {
    factors[i] = ~Wide{0} / factorial;
    const std::size_t last = first + 2 * i;
    if (i + 1 < factors.size()) {
      factorial *= last + 1;
      factorial *= last + 2;
    }
  }
  return factors;
}

constexpr Factors sineFactors = inverseFactorials(3);
constexpr Factors cosineFactors = inverseFactorials(2);

// The square of an angle of at most an eighth turn, in parts of 2^128. The angle is too small by less than 4
// units of 2^-127, so the square is too small by less than 20 parts, including what is cut off here.
Wide squared(const Estimate& angle) {
  const Wide square = highProduct(angle.mantissa, angle.mantissa);  // in units of 2^(128 + 2 * exponent)
  const int shift = -256 - 2 * angle.exponent;
  return shift >= 0 ? shiftedRight(square, shift) : square << -shift;
}

// angle * (1 - angle^2 (1/3! - angle^2 (1/5! - ...))). The bracket is off by less than 4 parts of 2^128, plus
// a sixth of the error of the square: 8 in all. The terms that the series leaves out are far below one part.
// Multiplying by the mantissa does not make more units of these parts, and drops one more.
Estimate sineOf(const Estimate& angle) {
  const Wide less = highProduct(angle.mantissa, alternating(sineFactors, squared(angle)));
  return {angle.mantissa - less, angle.exponent, angle.error + 12};
}

// 1 - angle^2 (1/2! - angle^2 (1/4! - ...)). Its error is computed in the same way, with half that of the
// square.
Estimate cosineOf(const Estimate& angle) {
  const Wide less = alternating(cosineFactors, squared(angle));
  return {less == 0 ? ~Wide{0} : 0 - less, -128, 20};
}

// Below 2^-27, the sine differs from the angle by less than half the way to the middle between two doubles,
// and so does the cosine from 1.
constexpr std::uint64_t bitsOfLeastAngle = static_cast<std::uint64_t>(1023 - 27) << 52;

}  // namespace

double sine(double angle, Wide doubt) {
  const std::uint64_t sign = bitsOf(angle) & signBit;
  const std::uint64_t magnitude = bitsOf(angle) ^ sign;
  if (magnitude >= bitsOfInfinity) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  if (magnitude < bitsOfLeastAngle) {
    return angle;
  }
  const Binary exact = binaryOf(magnitude);
  const QuarterTurns turns = quarterTurnsOf(exact);
  Estimate value = turns.count % 2 == 0 ? sineOf(turns.rest) : cosineOf(turns.rest);
  value.error += doubt;
  const bool isRestNegative = turns.isLess && turns.count % 2 == 0;
  const bool isNegative = ((sign != 0) != (turns.count >= 2)) != isRestNegative;
  const double result = nearest(value, [&](const Binary& middle) { return sineExceeds(exact, middle); });
  return isNegative ? -result : result;
}

double cosine(double angle, Wide doubt) {
  const std::uint64_t magnitude = bitsOf(angle) & ~signBit;
  if (magnitude >= bitsOfInfinity) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  if (magnitude < bitsOfLeastAngle) {
    return 1.0;
  }
  const Binary exact = binaryOf(magnitude);
  const QuarterTurns turns = quarterTurnsOf(exact);
  Estimate value = turns.count % 2 == 0 ? cosineOf(turns.rest) : sineOf(turns.rest);
  value.error += doubt;
  const bool isRestNegative = turns.isLess && turns.count % 2 != 0;
  const bool isNegative = (turns.count == 1 || turns.count == 2) != isRestNegative;
  const double result = nearest(value, [&](const Binary& middle) { return cosineExceeds(exact, middle); });
  return isNegative ? -result : result;
}

double sine(double angle) {
  return sine(angle, 0);
}

double cosine(double angle) {
  return cosine(angle, 0);
}

}  // namespace orvantis::trigonometry
