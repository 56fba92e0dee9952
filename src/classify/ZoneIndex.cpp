#include "classify/ZoneIndex.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include <filter/detection/Point.h>

#include "classify/Blocks.h"
#include "classify/Counting.h"
#include "classify/Flags.h"
#include "classify/Lookup.h"
#include "classify/Pending.h"

namespace orvantis::filter::classify {
ZoneIndex::ZoneIndex(const detection::ZoneDetector& detector, double safety)
    : zones_(freeze(detector)), grid_(gridOf(zones_, safety)), heights_(heightsOf(zones_)) {
  for (const FrozenZone& zone : zones_) {
    shapes_[static_cast<std::size_t>(zone.bit)] = zone.shape.get();
  }
}

template <typename Real>
// NOLINTNEXTLINE(readability-non-const-parameter): the blocks write the masks
void ZoneIndex::classify(const PointsView<Real>& points, std::uint64_t* masks) const {
  Blocks<Real> blocks(points, masks);
  while (blocks.next()) {
    classifyBlock(blocks.block(), Purpose::Masks);
    blocks.finish();
  }
}

template <typename Real>
// NOLINTNEXTLINE(readability-non-const-parameter): the blocks write the masks
ZoneCounts ZoneIndex::count(const PointsView<Real>& points, std::uint64_t* masks) const {
  ZoneCounts counts;
  BitCounts bits;
  Blocks<Real> blocks(points, masks);
  const bool haveNaNsZones = (grid_.palette[grid_.codes[grid_.cellOfNaN()]] & zoneBits) != 0;
  alignas(64) std::array<std::uint64_t, Block<Real>::capacity> returns;
  while (blocks.next()) {
    const Block<Real>& block = blocks.block();
    const NoReturns noReturns = classifyBlock(block, Purpose::Counts);
    const std::uint64_t* counted = block.masks;
    if (noReturns.count != 0 && (noReturns.haveInfinite || haveNaNsZones)) {
      for (std::size_t i = 0; i < blocks.size(); ++i) {
        returns[i] = isReturn(block.points, i) ? block.masks[i] : 0;
      }
      counted = returns.data();
    }
    countZones(counted, blocks.size(), bits);
    counts.noReturns += noReturns.count;
    blocks.finish();
  }
  const std::array<std::uint64_t, BitCounts::numCounts> sums = bits.sums();
  std::copy_n(sums.begin(), counts.inside.size(), counts.inside.begin());
  counts.excluded = sums[BitCounts::excluded];
  return counts;
}

template <typename Real>
NoReturns ZoneIndex::classifyBlock(const Block<Real>& block, Purpose purpose) const {
  Pending pending;
  const NoReturns noReturns = lookUp(grid_, heights_, block, purpose, pending);
  decide(grid_, heights_, shapes_, block, pending);
  if (grid_.alwaysAsked != 0) {
    askAlways(block);
  }
  return noReturns;
}

template <typename Real>
void ZoneIndex::askAlways(const Block<Real>& block) const {
  for (std::size_t i = 0; i < block.points.size; ++i) {
    std::uint64_t& mask = block.masks[i];
    const std::size_t offset = i * block.points.stride;
    for (std::uint64_t rest = mask & grid_.alwaysAsked; rest != 0; rest &= rest - 1) {
      const auto zone = static_cast<std::size_t>(std::countr_zero(rest));
      const detection::Point point(valueAt<Real>(block.points.x, offset),
                                   valueAt<Real>(block.points.y, offset));
      if (!shapes_[zone]->within(point)) {
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
