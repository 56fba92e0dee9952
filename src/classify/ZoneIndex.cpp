#include "classify/ZoneIndex.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include <filter/detection/Point.h>

#include "classify/Block.h"
#include "classify/Copying.h"
#include "classify/Counting.h"
#include "classify/Lookup.h"
#include "classify/Pending.h"

namespace orvantis::filter::classify {
namespace {

constexpr std::size_t blockSize = Block<float>::capacity;

// Makes blocks of points: of the caller's own arrays, where they are arrays, or of copies.
template <typename Real>
class Blocks {
 public:
  Block<Real> of(const PointsView<Real>& points, std::size_t first, std::size_t size, std::uint64_t* masks) {
    const PointsView<Real> part{at(points.x, first * points.stride), at(points.y, first * points.stride),
                                at(points.z, first * points.stride), points.stride, size};
    if (points.stride == sizeof(Real) && isAligned(part.x) && isAligned(part.y) && isAligned(part.z)) {
      return {static_cast<const Real*>(part.x), static_cast<const Real*>(part.y),
              static_cast<const Real*>(part.z), size, masks};
    }
    copyColumns(part, {x_.data(), y_.data(), z_.data()});
    return {x_.data(), y_.data(), z_.data(), size, masks};
  }

 private:
  using Copy = std::array<Real, blockSize>;

  static const void* at(const void* values, std::size_t offset) {
    return static_cast<const unsigned char*>(values) + offset;
  }
  static bool isAligned(const void* values) {
    return reinterpret_cast<std::uintptr_t>(values) % alignof(Real) == 0;
  }

  alignas(64) Copy x_;
  alignas(64) Copy y_;
  alignas(64) Copy z_;
};

template <typename Real>
bool isFinite(const Block<Real>& block, std::size_t point) {
  return std::isfinite(block.x[point]) && std::isfinite(block.y[point]) && std::isfinite(block.z[point]);
}

}  // namespace

ZoneIndex::ZoneIndex(const detection::ZoneDetector& detector, double safety)
    : zones_(freeze(detector)), grid_(gridOf(zones_, safety)), heights_(heightsOf(zones_)) {
  for (const FrozenZone& zone : zones_) {
    shapes_[static_cast<std::size_t>(zone.bit)] = zone.shape.get();
  }
}

template <typename Real>
void ZoneIndex::classify(const PointsView<Real>& points, std::uint64_t* masks) const {
  Blocks<Real> blocks;
  for (std::size_t first = 0; first < points.size; first += blockSize) {
    const std::size_t size = std::min(blockSize, points.size - first);
    classifyBlock(blocks.of(points, first, size, masks + first), Fetching::Heights);
  }
}

template <typename Real>
ZoneCounts ZoneIndex::count(const PointsView<Real>& points, std::uint64_t* masks) const {
  ZoneCounts counts;
  BitCounts bits;
  Blocks<Real> blocks;
  const Fetching fetching = masks == nullptr ? Fetching::All : Fetching::Heights;
  alignas(64) std::array<std::uint64_t, blockSize> ownMasks;
  for (std::size_t first = 0; first < points.size; first += blockSize) {
    const std::size_t size = std::min(blockSize, points.size - first);
    const Block<Real> block =
        blocks.of(points, first, size, masks != nullptr ? masks + first : ownMasks.data());
    const std::size_t noReturns = classifyBlock(block, fetching);
    const std::uint64_t* counted = block.masks;
    if (noReturns != 0) {
      for (std::size_t i = 0; i < size; ++i) {
        ownMasks[i] = isFinite(block, i) ? block.masks[i] : 0;
      }
      counted = ownMasks.data();
    }
    countZones(counted, size, bits);
    counts.noReturns += noReturns;
  }
  const std::array<std::uint64_t, BitCounts::numCounts> sums = bits.sums();
  std::copy_n(sums.begin(), counts.inside.size(), counts.inside.begin());
  counts.excluded = sums[BitCounts::excluded];
  return counts;
}

template <typename Real>
std::size_t ZoneIndex::classifyBlock(const Block<Real>& block, Fetching fetching) const {
  Pending pending;
  const std::size_t noReturns = lookUp(grid_, heights_, block, fetching, pending);
  decide(grid_, heights_, shapes_, block, pending);
  if (grid_.alwaysAsked != 0) {
    askAlways(block);
  }
  return noReturns;
}

template <typename Real>
void ZoneIndex::askAlways(const Block<Real>& block) const {
  for (std::size_t i = 0; i < block.size; ++i) {
    std::uint64_t& mask = block.masks[i];
    for (std::uint64_t rest = mask & grid_.alwaysAsked; rest != 0; rest &= rest - 1) {
      const auto zone = static_cast<std::size_t>(std::countr_zero(rest));
      if (!shapes_[zone]->within(detection::Point(block.x[i], block.y[i]))) {
        mask &= ~(std::uint64_t{1} << zone);
      }
    }
  }
}

template void ZoneIndex::classify(const PointsView<float>&, std::uint64_t*) const;
template void ZoneIndex::classify(const PointsView<double>&, std::uint64_t*) const;
template ZoneCounts ZoneIndex::count(const PointsView<float>&, std::uint64_t*) const;
template ZoneCounts ZoneIndex::count(const PointsView<double>&, std::uint64_t*) const;

}  // namespace orvantis::filter::classify
