#pragma once

#include "trigonometry/Rounding.h"

namespace orvantis::trigonometry {

/// An angle as a number of quarter turns plus or minus a rest of at most an eighth turn.
struct QuarterTurns {
  unsigned count;  ///< modulo 4
  bool isLess;     ///< whether the rest is subtracted
  Estimate rest;   ///< in radians; its mantissa is from 2^126 up to 2^128, and its exponent at most -127
};

/// @param angle finite, and at least 2^-27
QuarterTurns quarterTurnsOf(const Binary& angle);

}  // namespace orvantis::trigonometry
