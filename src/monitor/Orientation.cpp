#include "monitor/Orientation.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace orvantis::filter::monitor {
namespace {

int signOf(double value) {
  return static_cast<int>(value > 0.0) - static_cast<int>(value < 0.0);
}

// A sum of doubles without rounding: components of increasing magnitude that do not overlap, so the last one
// that is not zero has the sign of the whole.
class ExactSum {
 public:
  void add(double value) {
    for (std::size_t i = 0; i < size_; ++i) {
      // The rounded sum goes on to the next component, its rounding error stays here.
      const double sum = components_[i] + value;
      const double shareOfValue = sum - components_[i];
      const double shareOfComponent = sum - shareOfValue;
      components_[i] = (components_[i] - shareOfComponent) + (value - shareOfValue);
      value = sum;
    }
    components_[size_++] = value;
  }

  void addProduct(double a, double b) {
    const double product = a * b;
    add(std::fma(a, b, -product));
    add(product);
  }

  int sign() const {
    for (std::size_t i = size_; i > 0; --i) {
      if (components_[i - 1] != 0.0) {
        return signOf(components_[i - 1]);
      }
    }
    return 0;
  }

 private:
  std::array<double, 12> components_{};
  std::size_t size_ = 0;
};

// The cross product multiplied out, so that no difference of coordinates has to be rounded.
int exactOrientation(const core::PlanarPoint& a, const core::PlanarPoint& b, const core::PlanarPoint& c) {
  ExactSum sum;
  sum.addProduct(a.x(), b.y());
  sum.addProduct(-a.y(), b.x());
  sum.addProduct(b.x(), c.y());
  sum.addProduct(-b.y(), c.x());
  sum.addProduct(c.x(), a.y());
  sum.addProduct(-c.y(), a.x());
  return sum.sign();
}

}  // namespace

double crossProduct(const core::PlanarPoint& a, const core::PlanarPoint& b, const core::PlanarPoint& c) {
  return (b.x() - a.x()) * (c.y() - a.y()) - (b.y() - a.y()) * (c.x() - a.x());
}

int orientation(const core::PlanarPoint& a, const core::PlanarPoint& b, const core::PlanarPoint& c) {
  const double left = (b.x() - a.x()) * (c.y() - a.y());
  const double right = (b.y() - a.y()) * (c.x() - a.x());
  const double difference = left - right;
  // Each product carries three roundings and their difference a fourth; beyond this bound none of them can
  // turn the sign. All but points that are almost on the line are decided here.
  constexpr double unit = std::numeric_limits<double>::epsilon() / 2.0;
  constexpr double bound = (3.0 + 16.0 * unit) * unit;
  if (std::abs(difference) > bound * (std::abs(left) + std::abs(right))) {
    return signOf(difference);
  }
  return exactOrientation(a, b, c);
}

}  // namespace orvantis::filter::monitor
