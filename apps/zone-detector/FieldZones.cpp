#include "FieldZones.h"

#include <algorithm>

#include "Console.h"
#include "Text.h"

namespace orvantis::app {

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

std::vector<std::string> ZoneCells::next(const FieldZone& zone) {
  const bool isNew = zone.field != lastField_;
  lastField_ = zone.field;
  return {isNew ? std::to_string(zone.field) + " " + zone.fieldName : "",
          std::to_string(zone.zone) + " " + zone.name()};
}

void noteHeights(std::vector<FieldZone>& zones, const Cloud& cloud) {
  for (FieldZone& zone : zones) {
    if (!zone.heightSeen) {
      zone.heightSeen = std::ranges::any_of(cloud, [&zone](const Eigen::Vector3d& point) {
        return point.allFinite() && point.z() >= zone.volume->getZMin() &&
               point.z() <= zone.volume->getZMax();
      });
    }
  }
}

void warnOfHeights(const std::vector<FieldZone>& zones, const Console& console) {
  for (const FieldZone& zone : zones) {
    if (!zone.heightSeen) {
      console.warn("no point of any frame is between the heights of zone \"" + printable(zone.name()) +
                   "\" (field " + std::to_string(zone.field) + "), " + toText(zone.volume->getZMin()) +
                   " to " + toText(zone.volume->getZMax()) + "; are its heights in the frame of the points?");
    }
  }
}

}  // namespace orvantis::app
