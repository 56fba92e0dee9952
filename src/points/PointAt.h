#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>

#include <filter/classify/PointClassifier.h>

namespace orvantis::toolkit {

/// One point of a view.
template <typename Real>
std::array<Real, 3> pointAt(const filter::classify::PointsView<Real>& points, std::size_t i) noexcept {
  const auto value = [&](const void* first) {
    Real number{};  // copied, since the address may be unaligned
    std::memcpy(&number, static_cast<const unsigned char*>(first) + i * points.stride, sizeof(Real));
    return number;
  };
  return {value(points.x), value(points.y), value(points.z)};
}

template <typename Real>
bool isFinite(const std::array<Real, 3>& point) noexcept {
  return std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
}

template <typename Real>
bool isAtOrigin(const std::array<Real, 3>& point) noexcept {
  return point[0] == 0 && point[1] == 0 && point[2] == 0;
}

}  // namespace orvantis::toolkit
