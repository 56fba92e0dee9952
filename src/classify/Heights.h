#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "classify/FrozenZones.h"

namespace orvantis::filter::classify {

/// Floats near this are one apart: adding it rounds to whole numbers.
inline constexpr float wholeNumbers = 0x1.8p23F;

/// Which zones have a height between their bounds: a table of the slabs between the bounds of all zones.
///
/// A bound that belongs to the slab below it is replaced by the next double, so that every slab begins with
/// the height that starts it. Heights are put into buckets by a monotone function, and in a bucket that one
/// slab starts in, one comparison tells the slab.
struct Heights {
  /// No zone has a height below or above, rounded to float.
  float lowestInside = std::numeric_limits<float>::infinity();
  float highestInside = -std::numeric_limits<float>::infinity();

  float origin{};
  float bucketsPerMetre{};
  std::int32_t lastBucket{};

  // By bucket; after the last one comes the bucket of NaN, which no zone holds.
  std::vector<double> starts;        ///< where a slab starts; NaN where several do
  std::vector<float> startsAsFloat;  ///< rounded up: they divide the floats in the same way
  std::vector<std::uint64_t> masks;  ///< below the start, and from it on; all bits where several slabs start

  std::vector<std::uint16_t> firstSlabs;  ///< by bucket, the first slab that starts there, and one more
  std::vector<double> slabStarts;
  std::vector<std::uint64_t> slabMasks;  ///< one more: below the first start

  /// The zones at a height, whatever its bucket.
  std::uint64_t zonesAt(double height) const;
  std::int32_t bucket(float height) const;
  std::size_t bytes() const;
};

Heights heightsOf(const std::vector<FrozenZone>& zones);

}  // namespace orvantis::filter::classify
