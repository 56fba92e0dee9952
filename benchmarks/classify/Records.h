#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include <filter/classify/PointClassifier.h>

#include "classify/Clouds.h"

namespace orvantis::benchmarks {

/// The points of a cloud as a host may have them: in records of `stride` bytes or, for 0, in three arrays.
template <typename Real>
class Records {
 public:
  Records(const Cloud& cloud, std::size_t stride)
      : stride_(stride == 0 ? sizeof(Real) : stride),
        toNext_(stride == 0 ? cloud.size() * sizeof(Real) : sizeof(Real)),
        size_(cloud.size()),
        bytes_(stride == 0 ? 3 * cloud.size() * sizeof(Real) : cloud.size() * stride) {
    for (std::size_t i = 0; i < size_; ++i) {
      const Real values[] = {static_cast<Real>(cloud.x[i]), static_cast<Real>(cloud.y[i]),
                             static_cast<Real>(cloud.z[i])};
      for (std::size_t k = 0; k < 3; ++k) {
        std::memcpy(bytes_.data() + i * stride_ + k * toNext_, &values[k], sizeof(Real));
      }
    }
  }

  filter::classify::PointsView<Real> view() const {
    return {bytes_.data(), bytes_.data() + toNext_, bytes_.data() + 2 * toNext_, stride_, size_};
  }

 private:
  std::size_t stride_;
  std::size_t toNext_;  // coordinate
  std::size_t size_;
  std::vector<unsigned char> bytes_;
};

/// Reads all coordinates and writes a mask that hardly depends on them: the speed of the memory.
template <typename Real, std::size_t stride>
void readAndWrite(const filter::classify::PointsView<Real>& points, std::uint64_t* masks) {
  constexpr std::size_t step = stride == 0 ? 1 : stride / sizeof(Real);
  const auto* x = static_cast<const Real*>(points.x);
  const auto* y = static_cast<const Real*>(points.y);
  const auto* z = static_cast<const Real*>(points.z);
  for (std::size_t i = 0; i < points.size; ++i) {
    masks[i] = x[i * step] + y[i * step] > z[i * step] ? 1U : 0U;
  }
}

}  // namespace orvantis::benchmarks
