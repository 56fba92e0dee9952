#pragma once

namespace orvantis::toolkit {

/// The smallest number that is 1, 2 or 5 times a power of ten and at least `atLeast`.
double niceStep(double atLeast);
/// How many decimals multiples of such a step need.
int decimalsOf(double step);

}  // namespace orvantis::toolkit
