#pragma once

namespace orvantis::toolkit {

/// The smallest 1, 2 or 5 times a power of ten that is not below.
double niceStep(double atLeast);
/// The decimals that multiples of such a step need.
int decimalsOf(double step);

}  // namespace orvantis::toolkit
