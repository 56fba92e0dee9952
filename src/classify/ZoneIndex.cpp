#include "classify/ZoneIndex.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include <filter/detection/Point.h>

#include "classify/Kernel.h"

namespace orvantis::filter::classify {
namespace {

constexpr std::size_t blockSize = PointList::capacity;

// A block of points as three arrays: the caller's own, where they are arrays, or copies.
template <typename Real>
class Block {
 public:
  void read(const PointsView<Real>& points, std::size_t first, std::size_t size) {
    const PointsView<Real> part{at(points.x, first * points.stride), at(points.y, first * points.stride),
                                at(points.z, first * points.stride), points.stride, size};
    if (points.stride == sizeof(Real) && isAligned(part.x) && isAligned(part.y) && isAligned(part.z)) {
      x = static_cast<const Real*>(part.x);
      y = static_cast<const Real*>(part.y);
      z = static_cast<const Real*>(part.z);
      return;
    }
    copyColumns(part, copyOfX_.data(), copyOfY_.data(), copyOfZ_.data());
    x = copyOfX_.data();
    y = copyOfY_.data();
    z = copyOfZ_.data();
  }

  bool isFinite(std::size_t point) const {
    return std::isfinite(x[point]) && std::isfinite(y[point]) && std::isfinite(z[point]);
  }

  const Real* x;
  const Real* y;
  const Real* z;

 private:
  using Copy = std::array<Real, blockSize>;

  static const void* at(const void* values, std::size_t offset) {
    return static_cast<const unsigned char*>(values) + offset;
  }
  static bool isAligned(const void* values) {
    return reinterpret_cast<std::uintptr_t>(values) % alignof(Real) == 0;
  }

  alignas(64) Copy copyOfX_;
  alignas(64) Copy copyOfY_;
  alignas(64) Copy copyOfZ_;
};

}  // namespace

ZoneIndex::ZoneIndex(const detection::ZoneDetector& detector, double safety)
    : zones_(freeze(detector)), grid_(gridOf(zones_, safety)), heights_(heightsOf(zones_)) {
  for (const FrozenZone& zone : zones_) {
    shapes_[static_cast<std::size_t>(zone.bit)] = zone.shape.get();
  }
}

template <typename Real>
void ZoneIndex::classify(const PointsView<Real>& points, std::uint64_t* masks) const {
  Block<Real> block;
  for (std::size_t first = 0; first < points.size; first += blockSize) {
    const std::size_t size = std::min(blockSize, points.size - first);
    block.read(points, first, size);
    classifyBlock(block.x, block.y, block.z, size, masks + first, false);
  }
}

template <typename Real>
ZoneCounts ZoneIndex::count(const PointsView<Real>& points, std::uint64_t* masks) const {
  ZoneCounts counts;
  BitCounts bits;
  Block<Real> block;
  alignas(64) std::array<std::uint64_t, blockSize> ownMasks;
  for (std::size_t first = 0; first < points.size; first += blockSize) {
    const std::size_t size = std::min(blockSize, points.size - first);
    std::uint64_t* blockMasks = masks != nullptr ? masks + first : ownMasks.data();
    block.read(points, first, size);
    const std::size_t notFinite =
        classifyBlock(block.x, block.y, block.z, size, blockMasks, masks == nullptr);
    if (notFinite != 0) {
      for (std::size_t i = 0; i < size; ++i) {
        ownMasks[i] = block.isFinite(i) ? blockMasks[i] : 0;
      }
      blockMasks = ownMasks.data();
    }
    countZones(blockMasks, size, bits);
    counts.noReturns += notFinite;
  }
  const std::array<std::uint64_t, BitCounts::numCounts> sums = bits.sums();
  std::copy_n(sums.begin(), counts.inside.size(), counts.inside.begin());
  counts.excluded = sums[BitCounts::excluded];
  return counts;
}

template <typename Real>
std::size_t ZoneIndex::classifyBlock(const Real* x, const Real* y, const Real* z, std::size_t size,
                                     std::uint64_t* masks, bool fetchesAll) const {
  Pending pending;
  const std::size_t notFinite = lookUp(grid_, heights_, x, y, z, size, masks, pending, fetchesAll);
  decide(grid_, heights_, shapes_, x, y, z, pending, masks);
  if (grid_.alwaysAsked != 0) {
    askAlways(x, y, size, masks);
  }
  return notFinite;
}

template <typename Real>
void ZoneIndex::askAlways(const Real* x, const Real* y, std::size_t size, std::uint64_t* masks) const {
  for (std::size_t i = 0; i < size; ++i) {
    for (std::uint64_t rest = masks[i] & grid_.alwaysAsked; rest != 0; rest &= rest - 1) {
      const auto zone = static_cast<std::size_t>(std::countr_zero(rest));
      if (!shapes_[zone]->within(detection::Point(x[i], y[i]))) {
        masks[i] &= ~(std::uint64_t{1} << zone);
      }
    }
  }
}

template void ZoneIndex::classify(const PointsView<float>&, std::uint64_t*) const;
template void ZoneIndex::classify(const PointsView<double>&, std::uint64_t*) const;
template ZoneCounts ZoneIndex::count(const PointsView<float>&, std::uint64_t*) const;
template ZoneCounts ZoneIndex::count(const PointsView<double>&, std::uint64_t*) const;

}  // namespace orvantis::filter::classify
