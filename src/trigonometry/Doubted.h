#pragma once

#include "trigonometry/Wide.h"

namespace orvantis::trigonometry {

/// The functions of Trigonometry.h with a larger error bound: `doubt` is added to the proven error, in units
/// of the last of 128 bits. With 2^76 the exact comparison decides all digits that matter. Ordinary values
/// almost never reach it, so this lets tests compare the two.
double sine(double angle, Wide doubt);
double cosine(double angle, Wide doubt);
double bearing(double y, double x, Wide doubt);

}  // namespace orvantis::trigonometry
