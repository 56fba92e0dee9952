#include "document/FieldZones.h"

namespace orvantis::toolkit {

using filter::detection::ZoneDetector;

std::vector<FieldZone> zonesOf(const ZoneDetector& detector) {
  std::vector<FieldZone> zones;
  for (int f = 0; f < ZoneDetector::NUM_EVAL_FIELDS; ++f) {
    for (int z = 0; z < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++z) {
      if (const auto volume = detector.getZone(f, z)) {
        zones.push_back({f, z, detector.getEvaluationField(f)->name, volume});
      }
    }
  }
  return zones;
}

}  // namespace orvantis::toolkit
