#pragma once

#include <array>
#include <cstddef>

#include "trigonometry/Wide.h"

namespace orvantis::trigonometry {

/// The factors of a series, as parts of 2^128, rounded down.
using Factors = std::array<Wide, 16>;

/// t * (f[0] - t * (f[1] - t * (f[2] - ...))), all of them parts of 2^128, for a t of at most 0.617 and
/// factors of at most 1/2 that fall as fast as 1/3, 1/5, 1/7, ... or faster.
///
/// The result is off by less than 4 parts, without the effect of the error of t. Even and odd places are
/// added up separately, in powers of t^2, so that a processor can compute both at once. Each step of a sum
/// drops less than 1 part in the factor, 1 in the product, and 1/3 for the square, which is itself too small
/// by less than 1. What was dropped before shrinks by t^2. So each sum is too small by less than 2.4 / (1 -
/// 0.381) < 4. The two errors have opposite signs, so their difference times t is off by less than 2.5, and
/// two products drop less than 0.7 and 1.
constexpr Wide alternating(const Factors& factors, Wide t) {
  const Wide square = highProduct(t, t);
  Wide even = 0;
  Wide odd = 0;
  for (std::size_t i = factors.size(); i > 0; i -= 2) {
    odd = factors[i - 1] + highProduct(square, odd);
    even = factors[i - 2] + highProduct(square, even);
  }
  return highProduct(t, even - highProduct(t, odd));
}

}  // namespace orvantis::trigonometry
