#pragma once

#include "trigonometry/Binary.h"

namespace orvantis::trigonometry {

/// Comparisons with as many digits as are needed. They end because the two compared numbers are never equal:
/// the bound is rational, and the sine and the cosine of an algebraic number other than zero, and the bearing
/// of a direction with algebraic coordinates that is not along an axis, are transcendental (F. Lindemann,
/// 1882).

/// Whether |sin(angle)| is greater than the bound. The angle is a positive number of at most 64 bits.
bool sineExceeds(const Binary& angle, const Binary& bound);
/// The same for |cos(angle)|.
bool cosineExceeds(const Binary& angle, const Binary& bound);

/// Whether the bearing of (x, y), or of (-x, y) when `isLeft`, is greater than the bound. Both coordinates
/// are positive and below 1. The bound has at most 64 bits, is from 2^-62 to 4, and differs from the bearing
/// by less than half a turn.
bool bearingExceeds(const Binary& y, const Binary& x, bool isLeft, const Binary& bound);

}  // namespace orvantis::trigonometry
