#include "HeightWarning.h"

#include "Console.h"
#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::app {

void warnOfHeights(const HeightWatch& heights, const Console& console) {
  for (const HeightWatch::ZoneHeights& zone : heights.zones()) {
    const std::string name =
        "zone \"" + printable(zone.zone.name()) + "\" (field " + std::to_string(zone.zone.field) + ")";
    const std::string range =
        toText(zone.zone.volume->getZMin()) + " to " + toText(zone.zone.volume->getZMax());
    if (!zone.isSeen) {
      console.warn("no point of any frame is between the heights of " + name + ", " + range +
                   "; are its heights in the frame of the points?");
    } else if (zone.isNearlyUnseen()) {
      console.warn(name + ": under 1 % of the points inside its outline are between its heights, " + range +
                   "; the others are between " + toText(zone.lowest, 3) + " and " + toText(zone.highest, 3) +
                   ". Is it empty, or are its heights in another frame than the points?");
    }
  }
}

}  // namespace orvantis::app
