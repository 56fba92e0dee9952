#pragma once

#include <string>
#include <vector>

#include "document/FieldZones.h"

namespace orvantis::app {

/// The two cells that begin a zone's row in tables: its field, unless that is the one of the row before, and
/// itself.
class ZoneCells {
 public:
  std::vector<std::string> next(int field, const std::string& fieldName, int zone,
                                const std::string& zoneName);
  std::vector<std::string> next(const toolkit::FieldZone& zone) {
    return next(zone.field, zone.fieldName, zone.zone, zone.name());
  }

 private:
  int lastField_ = -1;
};

}  // namespace orvantis::app
