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
/// The result is less than 4 parts off, beside the error of t. Even and odd places are added up apart from
/// each other, in powers of t^2, so that a processor does both at once. Of each sum one step drops less than
/// 1 part in the factor, 1 in the product and 1/3 for the square, of which less than 1 is missing, and what
/// was dropped before shrinks by t^2: less than 2.4 / (1 - 0.381) < 4 is missing. The two errors have
/// opposite signs, so their difference times t is less than 2.5 off, and two products drop less than 0.7
/// and 1.
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
