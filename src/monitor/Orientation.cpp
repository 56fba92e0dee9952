#include "monitor/Orientation.h"

#include <array>
#include <cmath>
#include <limits>

#include "trigonometry/Length.h"

namespace orvantis::filter::monitor {
namespace {

int signOf(double value) {
  return static_cast<int>(value > 0.0) - static_cast<int>(value < 0.0);
}

// The exact product less the rounded product.
double lostBy(double a, double b) {
  return std::fma(a, b, -(a * b));
}

// The cross product is multiplied out, so that no difference of coordinates has to be rounded.
int exactOrientation(const core::PlanarPoint& a, const core::PlanarPoint& b, const core::PlanarPoint& c) {
  std::array sum = {lostBy(a.x(), b.y()), a.x() * b.y(), lostBy(-a.y(), b.x()), -a.y() * b.x(),
                    lostBy(b.x(), c.y()), b.x() * c.y(), lostBy(-b.y(), c.x()), -b.y() * c.x(),
                    lostBy(c.x(), a.y()), c.x() * a.y(), lostBy(-c.y(), a.x()), -c.y() * a.x()};
  // After each step, the terms up to this one are components of increasing magnitude that do not overlap. So
  // in the end the last component that is not zero has the sign of the sum.
  for (double& term : sum) {
    for (double* component = sum.data(); component != &term; ++component) {
      // The rounded sum goes on to the next component, its rounding error stays here.
      const double rounded = *component + term;
      const double shareOfTerm = rounded - *component;
      const double shareOfComponent = rounded - shareOfTerm;
      *component = (*component - shareOfComponent) + (term - shareOfTerm);
      term = rounded;
    }
  }
  double last = 0.0;
  for (const double component : sum) {
    last = component != 0.0 ? component : last;
  }
  return signOf(last);
}

}  // namespace

double crossProduct(const core::PlanarPoint& a, const core::PlanarPoint& b, const core::PlanarPoint& c) {
  return (b.x() - a.x()) * (c.y() - a.y()) - (b.y() - a.y()) * (c.x() - a.x());
}

double distance(const core::PlanarPoint& a, const core::PlanarPoint& b) {
  return trigonometry::length(b.x() - a.x(), b.y() - a.y());
}

int orientation(const core::PlanarPoint& a, const core::PlanarPoint& b, const core::PlanarPoint& c) {
  const double left = (b.x() - a.x()) * (c.y() - a.y());
  const double right = (b.y() - a.y()) * (c.x() - a.x());
  const double difference = left - right;
  // Each product has three roundings and their difference a fourth, each of at most half an epsilon. Beyond
  // this bound they cannot turn the sign. Only points that are almost on the line are not decided here.
  constexpr double bound = 2.0 * std::numeric_limits<double>::epsilon();
  if (std::abs(difference) > bound * (std::abs(left) + std::abs(right))) {
    return signOf(difference);
  }
  return exactOrientation(a, b, c);
}

}  // namespace orvantis::filter::monitor
