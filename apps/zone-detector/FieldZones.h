#pragma once

#include <memory>
#include <string>
#include <vector>

#include <filter/detection/Zone3dBase.h>
#include <filter/detection/ZoneDetector.h>

#include "CloudReader.h"

namespace orvantis::app {

struct Console;

/// A zone of an evaluation field, with its names.
struct FieldZone {
  int field;
  int zone;
  std::string fieldName;
  std::shared_ptr<const filter::detection::Zone3dBase> volume;
  bool heightSeen = false;  ///< whether any point so far was between its heights

  std::string name() const { return volume->getName(); }
};

/// All of them, in the order of their indices.
std::vector<FieldZone> zonesOf(const filter::detection::ZoneDetector& detector);

/// The two cells that begin a zone's row in tables: its field, unless that is the one of the row before, and
/// itself.
class ZoneCells {
 public:
  std::vector<std::string> next(const FieldZone& zone);

 private:
  int lastField_ = -1;
};

void noteHeights(std::vector<FieldZone>& zones, const Cloud& cloud);

/// Points in one frame of reference and zones in another look like an empty scene; says so.
void warnOfHeights(const std::vector<FieldZone>& zones, const Console& console);

}  // namespace orvantis::app
