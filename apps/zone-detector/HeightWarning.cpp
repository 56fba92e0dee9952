#include "HeightWarning.h"

#include "Console.h"
#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::app {

void warnOfHeights(const HeightWatch& heights, const Console& console) {
  for (const FieldZone& zone : heights.unseen()) {
    console.warn("no point of any frame is between the heights of zone \"" + printable(zone.name()) +
                 "\" (field " + std::to_string(zone.field) + "), " + toText(zone.volume->getZMin()) + " to " +
                 toText(zone.volume->getZMax()) + "; are its heights in the frame of the points?");
  }
}

}  // namespace orvantis::app
