#include "session/HeightWarnings.h"

#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::toolkit {

std::vector<std::string> warningsOf(const HeightWatch& heights) {
  std::vector<std::string> warnings;
  for (const HeightWatch::ZoneHeights& zone : heights.zones()) {
    const std::string name =
        "zone \"" + printable(zone.zone.name()) + "\" (field " + std::to_string(zone.zone.field) + ")";
    const std::string range =
        toText(zone.zone.volume->getZMin()) + " to " + toText(zone.zone.volume->getZMax());
    if (!zone.isSeen) {
      warnings.push_back("no point of any frame is between the heights of " + name + ", " + range +
                         "; are its heights in the frame of the points?");
    } else if (zone.isNearlyUnseen()) {
      warnings.push_back(name + ": under 1 % of the points inside its outline are between its heights, " +
                         range + "; the others are between " + toText(zone.lowest, 3) + " and " +
                         toText(zone.highest, 3) +
                         ". Is it empty, or are its heights in another frame than the points?");
    }
  }
  return warnings;
}

}  // namespace orvantis::toolkit
