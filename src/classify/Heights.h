#pragma once

#include <cstdint>
#include <vector>

#include "classify/FrozenZones.h"

namespace orvantis::filter::classify {

/// Which zones have a height between their bounds: a table of the slabs between the bounds of all zones.
///
/// A bound that belongs to the slab below it is replaced by the next double, so that every slab begins with
/// the height that starts it and the slab of a height is the number of starts up to it. Rounded up to float,
/// the starts divide the floats in the same way.
struct Heights {
  /// Heights are put into buckets by a monotone function of the height as float, each bucket knows the number
  /// of starts in the buckets below it, and at most `startsPerBucket` more comparisons give the slab.
  float origin = 0.0F;
  float bucketsPerMetre = 1.0F;
  std::int32_t lastBucket = 0;
  std::int32_t startsPerBucket = 0;
  std::vector<std::int32_t> startsBelow;  ///< by bucket; one more entry for NaN
  std::vector<double> starts;             ///< then NaN, which no height is above
  std::vector<float> startsAsFloat;
  std::vector<std::uint64_t> masks;  ///< by slab; one more entry for NaN

  std::int32_t bucket(float height) const;
  std::size_t bytes() const;
};

Heights heightsOf(const std::vector<FrozenZone>& zones);

}  // namespace orvantis::filter::classify
