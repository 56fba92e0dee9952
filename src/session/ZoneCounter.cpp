#include "session/ZoneCounter.h"

#include <algorithm>
#include <memory>

namespace orvantis::toolkit {

using filter::classify::PointClassifier;
using filter::classify::ZoneCounts;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

namespace {

template <typename Real>
ZoneCounts countIn(const ZoneDetector& detector, const filter::classify::PointsView<Real>& points) {
  ZoneCounts counts;
  for (std::size_t i = 0; i < points.size; ++i) {
    const Coordinates point = coordinatesOf(points, i);
    if (!point.isFinite()) {
      ++counts.noReturns;
      continue;
    }
    const auto contains = [&point](const std::shared_ptr<Zone3dBase>& zone) {
      return zone && zone->within(point.x, point.y, point.z);
    };
    const auto& exclusions = detector.getExclusionZoneVector();
    if (std::any_of(exclusions.begin(), exclusions.end(), contains)) {
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

}  // namespace

ZoneCounts countZoneByZone(const ZoneDetector& detector, const Points& points) {
  return std::visit([&detector](const auto& view) { return countIn(detector, view); }, points);
}

}  // namespace orvantis::toolkit
