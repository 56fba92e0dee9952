#pragma once

namespace orvantis::testing {

/// The doubles nearest to the true values, by a library that is known to find them.
double mpfrSine(double angle);
double mpfrCosine(double angle);
double mpfrBearing(double y, double x);

}  // namespace orvantis::testing
