#pragma once

#include "trigonometry/Rounding.h"

namespace orvantis::trigonometry {

/// An angle as quarter turns and an angle of at most an eighth turn, of which it is that much more or less.
struct QuarterTurns {
  unsigned count;  ///< modulo 4
  bool isLess;     ///< whether the rest is taken off
  Estimate rest;   ///< in radians; its mantissa is from 2^126 up to 2^128, and its exponent at most -127
};

/// From a finite angle of at least 2^-27 in size.
QuarterTurns quarterTurnsOf(const Binary& angle);

}  // namespace orvantis::trigonometry
