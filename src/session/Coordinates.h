#pragma once

#include <cmath>
#include <cstddef>
#include <cstring>

#include <filter/classify/Points.h>

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
  const auto at = [&points, i](const void* first) {
    Real value{};  // copied, since the address may be unaligned
    std::memcpy(&value, static_cast<const unsigned char*>(first) + i * points.stride, sizeof(Real));
    return static_cast<double>(value);
  };
  return {at(points.x), at(points.y), at(points.z)};
}

}  // namespace orvantis::toolkit
