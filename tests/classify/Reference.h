#pragma once

#include <cstdint>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/ZoneDetector.h>

namespace orvantis::testing {

/// The mask of a point as each zone by itself tells it.
inline std::uint64_t maskByZones(const filter::detection::ZoneDetector& detector, double x, double y,
                                 double z) {
  using filter::classify::PointClassifier;
  std::uint64_t mask = 0;
  for (int field = 0; field < 8; ++field) {
    for (int zone = 0; zone < 3; ++zone) {
      const auto zone3d = detector.getZone(field, zone);
      if (zone3d && zone3d->within(x, y, z)) {
        mask |= std::uint64_t{1} << PointClassifier::zoneBit(field, zone);
      }
    }
  }
  int k = 0;
  for (const auto& zone3d : detector.getExclusionZoneVector()) {
    if (zone3d->within(x, y, z)) {
      mask |= std::uint64_t{1} << PointClassifier::exclusionBit(k);
    }
    ++k;
  }
  return mask;
}

}  // namespace orvantis::testing
