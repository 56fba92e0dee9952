#pragma once

#include <algorithm>

#include "trigonometry/Binary.h"

namespace orvantis::trigonometry {

/// A positive number that is known up to an error: it differs from mantissa * 2^exponent by at most
/// error * 2^exponent.
struct Estimate {
  Wide mantissa;
  int exponent;
  Wide error;
};

/// The double nearest to the number. When the error leaves open which of two doubles that is,
/// `exceeds(middle)` tells whether the number is greater than the middle between them; the number is never
/// the middle itself. The mantissa must be at least 2^100, and the error below that.
template <typename Exceeds>
double nearest(const Estimate& estimate, const Exceeds& exceeds) {
  const int shift = leadingZeros(estimate.mantissa);
  const Wide mantissa = estimate.mantissa << shift;
  const int exponent = estimate.exponent - shift;
  // How many bits do not fit into the double. They are more for a double so small that its exponent is the
  // least one.
  const int drop = std::max(128 - mantissaBits, leastExponent - exponent);
  if (drop > 128) {
    return 0.0;
  }
  const Wide kept = shiftedRight(mantissa, drop);
  const Wide half = Wide{1} << (drop - 1);
  const Wide rest = drop < 128 ? mantissa & (2 * half - 1) : mantissa;
  const Wide fromHalf = rest > half ? rest - half : half - rest;
  const bool isUp =
      fromHalf > estimate.error << shift ? rest > half : exceeds(Binary{2 * kept + 1, exponent + drop - 1});
  return doubleOf(lowHalf(kept) + (isUp ? 1 : 0), exponent + drop);
}

}  // namespace orvantis::trigonometry
