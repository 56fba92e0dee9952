#include "ClassifierCache.h"

#include <algorithm>

#include <filter/detection/ZoneDetector.h>

#include "Helper.h"

namespace orvantis::python {

using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

namespace {

// Calls back with each zone that has a bit, in the order of the bits, until it says false; null for an empty
// slot.
template <typename Visit>
bool allOf(const ZoneDetector& detector, const Visit& visit) {
  for (const auto& field : detector.getEvaluationFieldArray()) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(ZoneDetector::NUM_ZONES_PER_EVAL_FIELD); ++i) {
      if (!visit(field ? field->zones[i].get() : nullptr)) {
        return false;
      }
    }
  }
  const auto& zones = detector.getExclusionZoneVector();
  return std::all_of(zones.begin(), zones.end(), [&visit](const auto& zone) { return visit(zone.get()); });
}

}  // namespace

ClassifierKey::ClassifierKey(const ZoneDetector& detector) {
  allOf(detector, [this](const Zone3dBase* zone) {
    add(zone);
    return true;
  });
}

void ClassifierKey::add(const Zone3dBase* zone) {
  entries_.push_back(zone == nullptr ? Entry{nullptr, 0.0, 0.0}
                                     : Entry{zone->getZone2d(), zone->getZMin(), zone->getZMax()});
}

bool ClassifierKey::isSame(const Entry& entry, const Zone3dBase* zone) {
  if (zone == nullptr) {
    return entry.shape == nullptr;
  }
  return entry.shape == zone->getZone2d() && same(entry.zMin, zone->getZMin()) &&
         same(entry.zMax, zone->getZMax());
}

bool ClassifierKey::isOf(const ZoneDetector& detector) const {
  std::size_t i = 0;
  return allOf(detector,
               [&](const Zone3dBase* zone) { return i < entries_.size() && isSame(entries_[i++], zone); }) &&
         i == entries_.size();
}

bool ClassifierKey::isOf(const Zone3dBase& zone) const {
  return isSame(entries_.front(), &zone);
}

}  // namespace orvantis::python
