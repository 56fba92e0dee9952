#pragma once

#include <memory>
#include <string>
#include <vector>

#include <filter/detection/Zone3dBase.h>
#include <filter/detection/ZoneDetector.h>

namespace orvantis::toolkit {

/// A zone of an evaluation field, with its names.
struct FieldZone {
  int field;
  int zone;
  std::string fieldName;
  std::shared_ptr<const filter::detection::Zone3dBase> volume;

  std::string name() const { return volume->getName(); }
};

/// All zones of the evaluation fields, in the order of their indices.
std::vector<FieldZone> zonesOf(const filter::detection::ZoneDetector& detector);

}  // namespace orvantis::toolkit
