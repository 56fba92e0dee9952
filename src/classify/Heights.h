#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "classify/Folding.h"
#include "classify/FrozenZones.h"

namespace orvantis::filter::classify {

/// Which zones have a height between their bounds: a table of the slabs between the bounds of all zones.
///
/// A bound that belongs to the slab below it is replaced by the next double, so that every slab begins with
/// the height that starts it. Heights are put into narrow buckets by a function that keeps their order. A
/// bucket in which no slab starts lies in one slab.
struct Heights {
  static constexpr std::uint8_t openBucket =
      0x80;  ///< together with the number of the slab below the first start
  static constexpr std::uint8_t noSlab = 0x7F;  ///< the slab of NaN

  /// No zone has a height below the first or above the second, both rounded to float.
  float lowestInside = std::numeric_limits<float>::infinity();
  float highestInside = -std::numeric_limits<float>::infinity();

  Folding buckets;
  std::vector<std::uint8_t> slabs;  ///< by bucket; then those of NaN and of infinite heights

  /// By entry of `slabs`, with the flags: openCell if there is a zone; all bits for open buckets.
  std::array<std::uint64_t, 256> masks{};

  std::vector<double> slabStarts;        ///< followed by two NaNs, which no height reaches
  std::vector<std::uint64_t> slabMasks;  ///< the first one is for the heights below the first start

  /// The zones at a height in an open bucket.
  std::uint64_t zonesAt(double height, std::uint32_t bucket) const {
    std::size_t slab = slabs[bucket] & (openBucket - 1U);
    // Mostly one slab starts in the bucket. Without a branch, because a processor cannot predict the answer.
    slab += height >= slabStarts[slab] ? 1U : 0U;
    slab += height >= slabStarts[slab] ? 1U : 0U;
    while (height >= slabStarts[slab]) {
      ++slab;
    }
    return slabMasks[slab];
  }
  std::size_t bytes() const;
};

Heights heightsOf(const std::vector<FrozenZone>& zones);

}  // namespace orvantis::filter::classify
