// Edits of the exclusion zone list: each refusal is one warning and leaves the list as it is.

#include <algorithm>
#include <cstddef>

#include <filter/detection/ZoneDetector.h>

namespace orvantis::filter::detection {
namespace {

auto hasName(const std::string& name) {
  return [&name](const std::shared_ptr<Zone3dBase>& zone) { return zone->getName() == name; };
}

}  // namespace

void ZoneDetector::setExclusionZoneVector(const std::vector<std::shared_ptr<Zone3dBase>>& zones) {
  for (const std::shared_ptr<Zone3dBase>& zone : zones) {
    appendExclusionZone(zone);
  }
}

void ZoneDetector::appendExclusionZone(const std::shared_ptr<Zone3dBase>& zone) {
  if (!zone) {
    logger_.warnStream().write("Cannot set exclusion zone with empty zone");
    return;
  }
  const std::string name = zone->getName();
  if (name.empty()) {
    logger_.warnStream().write("Cannot set exclusion zone with empty name");
    return;
  }
  if (exclusionZones_.size() >= static_cast<std::size_t>(MAX_NUM_EXCLUSION_ZONES)) {
    logger_.warnStream().write("Cannot add exclusion zone, Maximum allowed exclusion zones is ",
                               MAX_NUM_EXCLUSION_ZONES);
    return;
  }
  if (!validateZoneNameLength(name)) {
    logger_.warnStream().write("Cannot append exclusion zone with name length outside of limits");
    return;
  }
  if (!validateExclusionZoneName(name)) {
    logger_.warnStream().write("Cannot append exclusion zone with repeated name");
    return;
  }
  exclusionZones_.push_back(zone);
}

void ZoneDetector::updateExclusionZone(const std::string& name, const std::shared_ptr<Zone3dBase>& zone) {
  if (!zone) {
    logger_.warnStream().write("Cannot update exclusion zone with empty zone");
    return;
  }
  if (zone->getName().empty()) {
    logger_.warnStream().write("Cannot update exclusion zone with empty name");
    return;
  }
  const auto found = std::find_if(exclusionZones_.begin(), exclusionZones_.end(), hasName(name));
  if (found != exclusionZones_.end()) {
    *found = zone;
  }
}

void ZoneDetector::eraseExclusionZone(const std::string& name) {
  const auto found = std::find_if(exclusionZones_.begin(), exclusionZones_.end(), hasName(name));
  if (found != exclusionZones_.end()) {
    exclusionZones_.erase(found);
  }
}

// Hosts are compiled against the parameter by value.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool ZoneDetector::validateExclusionZoneName(std::string name) {
  if (std::any_of(exclusionZones_.begin(), exclusionZones_.end(), hasName(name))) {
    logger_.warnStream().write("Duplicate Zone Name Entered");
    return false;
  }
  return true;
}

}  // namespace orvantis::filter::detection
