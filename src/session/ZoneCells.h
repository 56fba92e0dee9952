#pragma once

#include <string>
#include <vector>

#include "document/FieldZones.h"

namespace orvantis::toolkit {

/// The first two cells of a zone's row in tables: its field, which is empty when the row before has the same
/// field, and the zone.
class ZoneCells {
 public:
  std::vector<std::string> next(int field, const std::string& fieldName, int zone,
                                const std::string& zoneName);
  std::vector<std::string> next(const FieldZone& zone) {
    return next(zone.field, zone.fieldName, zone.zone, zone.name());
  }

 private:
  int lastField_ = -1;
};

}  // namespace orvantis::toolkit
