#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <filter/classify/PointClassifier.h>

namespace orvantis::filter::classify {

/// How the points of a view lie in memory.
enum class Layout {
  Arrays,  ///< three arrays of aligned numbers
  Records  ///< x, y and z in succession; as many bytes after z as z has may be read too
};

/// Points that are classified together, and where their masks go.
template <typename Real>
struct Block {
  static constexpr std::size_t capacity = 1024;
  static constexpr std::size_t groupSize = 16;  ///< points are looked up in groups

  PointsView<Real> points;  ///< whole groups, up to the capacity
  Layout layout;
  std::uint64_t* masks;
};

/// The value `offset` bytes after an address.
template <typename Real>
Real valueAt(const void* from, std::size_t offset) {
  // A stride may be negative, as a std::size_t beyond half its range; the offset is then negative too.
  const auto* at = static_cast<const unsigned char*>(from) + static_cast<std::ptrdiff_t>(offset);
  Real value;
  std::memcpy(&value, at, sizeof(Real));
  return value;
}

/// Whether the coordinates of a point are finite.
template <typename Real>
bool isReturn(const PointsView<Real>& points, std::size_t point) {
  const std::size_t offset = point * points.stride;
  return std::isfinite(valueAt<Real>(points.x, offset)) && std::isfinite(valueAt<Real>(points.y, offset)) &&
         std::isfinite(valueAt<Real>(points.z, offset));
}

}  // namespace orvantis::filter::classify
