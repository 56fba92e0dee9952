#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvantis::trigonometry {

/// The length of the vector (x, y), with an error of at most one unit of the last place. It is the same on
/// every machine, unlike std::hypot, which differs in the last bit between C libraries. Infinite when a
/// coordinate is infinite, else NaN when a coordinate is NaN.
inline double length(double x, double y) {
  // Between these, squares neither underflow nor overflow.
  constexpr double least = 0x1p-900;
  constexpr double most = 0x1p+1000;
  const double squares = x * x + y * y;
  if (squares >= least && squares <= most) {
    return std::sqrt(squares);
  }
  if (std::isinf(x) || std::isinf(y)) {
    return std::numeric_limits<double>::infinity();
  }
  const double larger = std::max(std::fabs(x), std::fabs(y));
  if (std::isnan(squares) || larger == 0.0) {
    return squares;
  }
  int exponent = 0;
  std::frexp(larger, &exponent);
  x = std::ldexp(x, -exponent);
  y = std::ldexp(y, -exponent);
  return std::ldexp(std::sqrt(x * x + y * y), exponent);
}

}  // namespace orvantis::trigonometry
