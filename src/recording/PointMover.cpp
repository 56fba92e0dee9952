#include "recording/PointMover.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>

namespace orvantis::toolkit {
namespace {

using filter::classify::PointsView;

// Points are moved in blocks, so that the compiler can do the arithmetic on vectors.
constexpr std::size_t blockSize = 256;
using Block = std::array<double, blockSize>;

template <typename Real>
void take(const void* first, std::size_t stride, std::size_t begin, std::size_t size, Block& out) {
  const auto* at = static_cast<const unsigned char*>(first) + begin * stride;
  for (std::size_t i = 0; i < size; ++i) {
    Real value{};
    std::memcpy(&value, at + i * stride, sizeof(Real));
    out[i] = static_cast<double>(value);
  }
}

template <typename Real>
Points moved(const PointsView<Real>& points, const Pose& pose, std::vector<Real>& buffer) {
  buffer.resize(3 * points.size);
  Real* const x = buffer.data();
  Real* const y = x + points.size;
  Real* const z = y + points.size;
  std::array<Block, 3> block;
  for (std::size_t begin = 0; begin < points.size; begin += blockSize) {
    const std::size_t size = std::min(blockSize, points.size - begin);
    take<Real>(points.x, points.stride, begin, size, block[0]);
    take<Real>(points.y, points.stride, begin, size, block[1]);
    take<Real>(points.z, points.stride, begin, size, block[2]);
    for (std::size_t i = 0; i < size; ++i) {
      const auto [px, py, pz] = pose(block[0][i], block[1][i], block[2][i]);
      x[begin + i] = static_cast<Real>(px);
      y[begin + i] = static_cast<Real>(py);
      z[begin + i] = static_cast<Real>(pz);
    }
  }
  return PointsView<Real>::separate(x, y, z, points.size);
}

}  // namespace

Points PointMover::move(const Points& points, const Pose& pose) {
  return std::visit(
      [&]<typename Real>(const PointsView<Real>& view) {
        if constexpr (std::is_same_v<Real, float>) {
          return moved(view, pose, floats_);
        } else {
          return moved(view, pose, doubles_);
        }
      },
      points);
}

}  // namespace orvantis::toolkit
