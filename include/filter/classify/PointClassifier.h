#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include <orvantis/Api.h>

namespace orvantis::filter::detection {
class ZoneDetector;
}

namespace orvantis::filter::classify {

/// The coordinates of `size` points as the caller holds them: three addresses and the distance in bytes from one value to
/// the next of the same coordinate. Nothing need be aligned; nothing is copied or owned.
template <typename Real>
struct PointsView {
  const void* x = nullptr;
  const void* y = nullptr;
  const void* z = nullptr;
  std::size_t stride = sizeof(Real);
  std::size_t size = 0;

  /// Three separate arrays.
  static PointsView separate(const Real* x, const Real* y, const Real* z, std::size_t size) {
    return {x, y, z, sizeof(Real), size};
  }
  /// Records of `stride` bytes that begin with x, y and z.
  static PointsView interleaved(const void* points, std::size_t stride, std::size_t size) {
    const auto* bytes = static_cast<const unsigned char*>(points);
    return {bytes, bytes + sizeof(Real), bytes + 2 * sizeof(Real), stride, size};
  }
};

}  // namespace orvantis::filter::classify
