#include "classify/FrozenZones.h"

#include <stdexcept>
#include <string>

#include <filter/classify/PointClassifier.h>

#include "zones/ShapeCopy.h"

namespace orvantis::filter::classify {
namespace {

using detection::Zone;
using detection::Zone3dBase;
using detection::ZoneDetector;

void append(std::vector<FrozenZone>& zones, const std::shared_ptr<Zone3dBase>& zone, int bit) {
  const std::shared_ptr<Zone> shape = zone ? zone->getZone2d() : nullptr;
  const bool holdsSomeHeight = zone && zone->getZMin() <= zone->getZMax();
  if (shape && holdsSomeHeight) {
    zones.push_back({detection::exactCopy(*shape), zone->getZMin(), zone->getZMax(), bit});
  }
}

}  // namespace

std::vector<FrozenZone> freeze(const ZoneDetector& detector) {
  const auto& exclusionZones = detector.getExclusionZoneVector();
  if (exclusionZones.size() > ZoneDetector::MAX_NUM_EXCLUSION_ZONES) {
    throw std::invalid_argument("A point classifier takes at most 32 exclusion zones, but the detector has " +
                                std::to_string(exclusionZones.size()));
  }
  std::vector<FrozenZone> zones;
  for (int field = 0; field < ZoneDetector::NUM_EVAL_FIELDS; ++field) {
    for (int zone = 0; zone < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++zone) {
      append(zones, detector.getZone(field, zone), PointClassifier::zoneBit(field, zone));
    }
  }
  for (std::size_t k = 0; k < exclusionZones.size(); ++k) {
    append(zones, exclusionZones[k], PointClassifier::exclusionBit(static_cast<int>(k)));
  }
  return zones;
}

}  // namespace orvantis::filter::classify
