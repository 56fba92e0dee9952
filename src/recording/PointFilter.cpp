#include "recording/PointFilter.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "points/PointAt.h"
#include "points/UsualStride.h"

namespace orvantis::toolkit {
namespace {

using filter::classify::PointsView;

enum class Verdict { Stays, AtOrigin, TooNear, TooFar };

class Judge {
 public:
  explicit Judge(const PointLimits& limits)
      : dropsOrigin_(limits.dropsOrigin),
        least_(limits.minRange > 0.0 ? limits.minRange * limits.minRange : 0.0),
        greatest_(limits.maxRange * limits.maxRange) {}

  template <typename Real>
  Verdict operator()(const std::array<Real, 3>& point) const {
    if (dropsOrigin_ && isAtOrigin(point)) {
      return Verdict::AtOrigin;
    }
    const auto x = static_cast<double>(point[0]);
    const auto y = static_cast<double>(point[1]);
    const auto z = static_cast<double>(point[2]);
    const double square = x * x + y * y + z * z;
    if (square < least_) {
      return Verdict::TooNear;
    }
    return square > greatest_ && isFinite(point) ? Verdict::TooFar : Verdict::Stays;
  }

 private:
  bool dropsOrigin_;
  double least_;
  double greatest_;
};

void note(Verdict verdict, DroppedPoints& dropped) {
  dropped.atOrigin += verdict == Verdict::AtOrigin ? 1 : 0;
  dropped.tooNear += verdict == Verdict::TooNear ? 1 : 0;
  dropped.tooFar += verdict == Verdict::TooFar ? 1 : 0;
}

// Compares whole numbers without their signs, which is fast: this is done for every frame.
template <typename Real, typename Stride>
std::uint64_t countIn(const PointsView<Real>& points, Stride stride) {
  using Bits = std::conditional_t<std::is_same_v<Real, float>, std::uint32_t, std::uint64_t>;
  constexpr std::size_t blockSize = 1024;
  const PointsView<Bits> bits{points.x, points.y, points.z, points.stride, points.size};
  std::uint64_t count = 0;
  for (std::size_t begin = 0; begin < bits.size; begin += blockSize) {
    const std::size_t size = std::min(bits.size - begin, blockSize);
    const auto* const at = static_cast<const unsigned char*>(bits.x) + begin * stride;
    Bits areZero = 0;  // mostly not even one x is 0
    for (std::size_t i = 0; i < size; ++i) {
      Bits x{};
      std::memcpy(&x, at + i * stride, sizeof(x));
      areZero |= static_cast<Bits>(x << 1U) == 0 ? 1U : 0U;
    }
    for (std::size_t i = begin; i < begin + size && areZero != 0; ++i) {
      const auto [x, y, z] = pointAt(bits, i);
      count += static_cast<Bits>((x | y | z) << 1U) == 0 ? 1 : 0;
    }
  }
  return count;
}

template <typename Real>
Points kept(const PointsView<Real>& points, const Judge& judge, DroppedPoints& dropped,
            std::vector<Real>& buffer) {
  std::size_t first = 0;
  while (first < points.size && judge(pointAt(points, first)) == Verdict::Stays) {
    ++first;
  }
  if (first == points.size) {
    return points;
  }
  buffer.clear();
  buffer.reserve(3 * points.size);
  for (std::size_t i = 0; i < points.size; ++i) {
    const std::array<Real, 3> point = pointAt(points, i);
    const Verdict verdict = i < first ? Verdict::Stays : judge(point);
    if (verdict == Verdict::Stays) {
      buffer.insert(buffer.end(), point.begin(), point.end());
    } else {
      note(verdict, dropped);
    }
  }
  return PointsView<Real>::interleaved(buffer.data(), 3 * sizeof(Real), buffer.size() / 3);
}

}  // namespace

std::uint64_t countAtOrigin(const Points& points) {
  return std::visit(
      []<typename Real>(const PointsView<Real>& view) {
        return withUsualStride<Real>(view.stride, [&](auto stride) { return countIn(view, stride); });
      },
      points);
}

Points PointFilter::keep(const Points& points, DroppedPoints& dropped) {
  if (limits_.dropsNothing()) {
    return points;
  }
  const Judge judge(limits_);
  return std::visit(
      [&]<typename Real>(const PointsView<Real>& view) {
        if constexpr (std::is_same_v<Real, float>) {
          return kept(view, judge, dropped, floats_);
        } else {
          return kept(view, judge, dropped, doubles_);
        }
      },
      points);
}

}  // namespace orvantis::toolkit
