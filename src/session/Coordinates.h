#pragma once

#include <cmath>
#include <cstddef>

#include <filter/classify/Points.h>

#include "points/PointAt.h"

namespace orvantis::toolkit {

using filter::classify::Points;
using filter::classify::sizeOf;

/// A point in double precision, also when its frame has floats.
struct Coordinates {
  double x;
  double y;
  double z;

  bool isFinite() const { return std::isfinite(x) && std::isfinite(y) && std::isfinite(z); }
};

/// Point number i of a view.
template <typename Real>
Coordinates coordinatesOf(const filter::classify::PointsView<Real>& points, std::size_t i) {
  const auto [x, y, z] = pointAt(points, i);
  return {static_cast<double>(x), static_cast<double>(y), static_cast<double>(z)};
}

}  // namespace orvantis::toolkit
