#include "drawing/Ticks.h"

#include <algorithm>
#include <cmath>

namespace orvantis::toolkit {

double niceStep(double atLeast) {
  const double power = std::pow(10.0, std::floor(std::log10(atLeast)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= atLeast) {
      return factor * power;
    }
  }
  return 10.0 * power;
}

int decimalsOf(double step) {
  return std::max(0, -static_cast<int>(std::floor(std::log10(step) + 1e-9)));
}

}  // namespace orvantis::toolkit
