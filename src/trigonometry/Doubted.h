#pragma once

#include "trigonometry/Wide.h"

namespace orvantis::trigonometry {

/// The functions of Trigonometry.h with less trust in what 128 bits tell: values are taken as open by `doubt`
/// more units of those bits than is proven. With 2^76 all the digits that matter come from the exact
/// comparison, which otherwise nearly nothing reaches; so tests can compare the two.
double sine(double angle, Wide doubt);
double cosine(double angle, Wide doubt);
double bearing(double y, double x, Wide doubt);

}  // namespace orvantis::trigonometry
