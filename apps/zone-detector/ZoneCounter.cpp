#include "ZoneCounter.h"

#include <algorithm>

namespace orvantis::app {

using filter::classify::PointClassifier;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

filter::classify::ZoneCounts countZoneByZone(const ZoneDetector& detector, const Cloud& cloud) {
  filter::classify::ZoneCounts counts;
  for (const Eigen::Vector3d& point : cloud) {
    if (!point.allFinite()) {
      ++counts.noReturns;
      continue;
    }
    const auto contains = [&point](const std::shared_ptr<Zone3dBase>& zone) {
      return zone && zone->within(point.x(), point.y(), point.z());
    };
    if (std::ranges::any_of(detector.getExclusionZoneVector(), contains)) {
      ++counts.excluded;
      continue;
    }
    for (int field = 0; field < ZoneDetector::NUM_EVAL_FIELDS; ++field) {
      for (int zone = 0; zone < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++zone) {
        if (contains(detector.getZone(field, zone))) {
          ++counts.inside[static_cast<std::size_t>(PointClassifier::zoneBit(field, zone))];
        }
      }
    }
  }
  return counts;
}

}  // namespace orvantis::app
