#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvantis::filter::classify {

/// An axis-parallel box of the plan.
struct Bounds {
  double minX = std::numeric_limits<double>::infinity();
  double minY = std::numeric_limits<double>::infinity();
  double maxX = -std::numeric_limits<double>::infinity();
  double maxY = -std::numeric_limits<double>::infinity();

  void include(double x, double y) {
    minX = std::min(minX, x);
    minY = std::min(minY, y);
    maxX = std::max(maxX, x);
    maxY = std::max(maxY, y);
  }
  double longSide() const { return std::max(maxX - minX, maxY - minY); }
  double largestCoordinate() const {
    return std::max({std::abs(minX), std::abs(minY), std::abs(maxX), std::abs(maxY)});
  }
};

}  // namespace orvantis::filter::classify
