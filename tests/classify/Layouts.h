#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <filter/classify/PointClassifier.h>

#include "classify/CriticalCases.h"

namespace orvantis::testing {

/// How a host may hold points: where the three numbers of a record stand, and how far the records are apart.
struct LayoutKind {
  const char* name;
  std::ptrdiff_t stride;  ///< 0: three arrays
  std::size_t firstByte;  ///< an odd one makes all addresses odd
  std::array<std::size_t, 3> offsets;
};

template <typename Real>
std::vector<LayoutKind> everyLayout() {
  constexpr std::size_t r = sizeof(Real);
  constexpr auto s = static_cast<std::ptrdiff_t>(r);
  constexpr std::array<std::size_t, 3> inOrder{0, r, 2 * r};
  return {{"arrays", 0, 0, {}},
          {"arrays at odd addresses", 0, 1, {}},
          {"records of three numbers", 3 * s, 0, inOrder},
          {"records of four numbers", 4 * s, 0, inOrder},
          {"records of five numbers", 5 * s, 0, inOrder},
          {"records of 24 bytes", 24, 0, inOrder},
          {"records of 32 bytes", 32, 0, inOrder},
          {"records of 48 bytes", 48, 0, inOrder},
          {"records of 100 bytes", 100, 0, inOrder},
          {"records at odd addresses", 4 * s, 1, inOrder},
          {"records with a byte more", 3 * s + 1, 0, inOrder},
          {"records with five bytes more", 3 * s + 5, 1, inOrder},
          {"records with two bytes more", 4 * s + 2, 0, inOrder},
          {"records far apart", (1 << 20) + 8, 0, inOrder},
          {"records backwards", -4 * s, 0, inOrder},
          {"records of three numbers backwards", -3 * s, 3, inOrder},
          {"other numbers between", 6 * s, 0, {0, 2 * r, 5 * r}},
          {"another number before z", 4 * s, 0, {0, r, 3 * r}},
          {"z, y, x", 3 * s, 0, {2 * r, r, 0}}};
}

/// Points in one of these layouts, in exactly as many bytes as they need.
template <typename Real>
class Layout {
 public:
  Layout(const std::vector<Point3>& points, const LayoutKind& kind) : size_(points.size()) {
    const bool isSeparate = kind.stride == 0;
    const auto step = static_cast<std::size_t>(isSeparate ? static_cast<std::ptrdiff_t>(sizeof(Real))
                                                          : std::abs(kind.stride));
    const std::size_t last = size_ == 0 ? 0 : size_ - 1;
    std::array<std::size_t, 3> starts{};
    std::size_t bytes = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      starts[k] = kind.firstByte + (isSeparate ? k * size_ * sizeof(Real) : kind.offsets[k]);
      bytes = std::max(bytes, starts[k] + last * step + sizeof(Real));
      // Backwards the first point stands at the end.
      starts[k] += kind.stride < 0 ? last * step : 0;
    }
    bytes_.resize(bytes);
    view_.stride = isSeparate ? sizeof(Real) : static_cast<std::size_t>(kind.stride);
    view_.size = size_;
    for (std::size_t i = 0; i < size_; ++i) {
      const std::array<double, 3> values{points[i].x, points[i].y, points[i].z};
      for (std::size_t k = 0; k < 3; ++k) {
        const auto value = static_cast<Real>(values[k]);
        std::memcpy(bytes_.data() + (starts[k] + i * view_.stride), &value, sizeof(Real));
      }
    }
    view_.x = bytes_.data() + starts[0];
    view_.y = bytes_.data() + starts[1];
    view_.z = bytes_.data() + starts[2];
  }

  const filter::classify::PointsView<Real>& view() const { return view_; }

 private:
  std::size_t size_;
  std::vector<unsigned char> bytes_;
  filter::classify::PointsView<Real> view_;
};

}  // namespace orvantis::testing
