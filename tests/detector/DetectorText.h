#pragma once

#include <memory>
#include <string>
#include <vector>

#include <filter/detection/ZoneDetector.h>

namespace orvantis::testing {

/// A zone over the unit square.
std::shared_ptr<filter::detection::Zone3dBase> zoneNamed(const std::string& name);
/// Zones over the unit square named `prefix` and their number, counted from `first`.
std::vector<std::shared_ptr<filter::detection::Zone3dBase>> zonesNamed(const std::string& prefix, int first,
                                                                       int count);
std::vector<std::string> namesOf(const std::vector<std::shared_ptr<filter::detection::Zone3dBase>>& zones);

/// Everything that a document keeps of a zone, numbers to the last bit.
std::string toText(const filter::detection::Zone3dBase& zone);
/// Everything that a document keeps of a detector, a line for each option, field slot and zone.
std::string toText(const filter::detection::ZoneDetector& detector);

}  // namespace orvantis::testing
