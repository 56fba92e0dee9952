#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include <filter/detection/Zone.h>
#include <filter/detection/ZoneDetector.h>

namespace orvantis::filter::classify {

/// The bits of the mask of a point: there are at most that many zones.
inline constexpr std::size_t numBits = std::numeric_limits<std::uint64_t>::digits;

/// A zone as it was when the classifier was made. The classifier owns its shape.
struct FrozenZone {
  std::shared_ptr<const detection::Zone> shape;
  double zMin;
  double zMax;
  int bit;
};

/// The zones of the detector that can contain a point: those with a shape and a height between their bounds.
/// @throws std::invalid_argument for more than 32 exclusion zones, or a shape whose `makeCopy` gives null
std::vector<FrozenZone> freeze(const detection::ZoneDetector& detector);

}  // namespace orvantis::filter::classify
