#include "classify/ZoneIndex.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

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
    x = read(points.x, points.stride, first, size, copyOfX_);
    y = read(points.y, points.stride, first, size, copyOfY_);
    z = read(points.z, points.stride, first, size, copyOfZ_);
  }

  bool isFinite(std::size_t point) const {
    return std::isfinite(x[point]) && std::isfinite(y[point]) && std::isfinite(z[point]);
  }

  const Real* x;
  const Real* y;
  const Real* z;

 private:
  using Copy = std::array<Real, blockSize>;

  static const Real* read(const void* values, std::size_t stride, std::size_t first, std::size_t size,
                          Copy& copy) {
    const auto* bytes = static_cast<const unsigned char*>(values) + first * stride;
    const bool isAligned = reinterpret_cast<std::uintptr_t>(bytes) % alignof(Real) == 0;
    if (stride == sizeof(Real) && isAligned) {
      return reinterpret_cast<const Real*>(bytes);
    }
    for (std::size_t i = 0; i < size; ++i) {
      std::memcpy(&copy[i], bytes + i * stride, sizeof(Real));
    }
    return copy.data();
  }

  Copy copyOfX_;
  Copy copyOfY_;
  Copy copyOfZ_;
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
    classifyBlock(block.x, block.y, block.z, size, masks + first);
  }
}

template <typename Real>
ZoneCounts ZoneIndex::count(const PointsView<Real>& points, std::uint64_t* masks) const {
  ZoneCounts counts;
  BitCounts bits;
  Block<Real> block;
  std::array<std::uint64_t, blockSize> ownMasks;
  for (std::size_t first = 0; first < points.size; first += blockSize) {
    const std::size_t size = std::min(blockSize, points.size - first);
    std::uint64_t* blockMasks = masks != nullptr ? masks + first : ownMasks.data();
    block.read(points, first, size);
    const std::size_t notFinite = classifyBlock(block.x, block.y, block.z, size, blockMasks);
    if (notFinite != 0) {
      for (std::size_t i = 0; i < size; ++i) {
        ownMasks[i] = block.isFinite(i) ? blockMasks[i] : 0;
      }
      blockMasks = ownMasks.data();
    }
    countZones(blockMasks, size, bits);
    counts.notFinite += notFinite;
  }
  counts.inside = bits.inside();
  counts.excluded = bits.numExcluded;
  return counts;
}

template <typename Real>
std::size_t ZoneIndex::classifyBlock(const Real* x, const Real* y, const Real* z, std::size_t size,
                                     std::uint64_t* masks) const {
  Pending pending;
  const std::size_t notFinite = lookUp(grid_, heights_, x, y, z, size, masks, pending);
  decideCut(grid_, shapes_, x, y, pending.cut, masks);
  decideCrossed(grid_, shapes_, x, y, pending.crossed, masks);
  decideHeights(heights_, z, pending.heights, masks);
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
