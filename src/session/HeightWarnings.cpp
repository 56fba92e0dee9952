#include "session/HeightWarnings.h"

#include <optional>
#include <utility>

#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

std::optional<std::string> warningOf(const HeightWatch::ZoneHeights& zone) {
  const std::string name =
      "zone \"" + printable(zone.zone.name()) + "\" (field " + std::to_string(zone.zone.field) + ")";
  const std::string range =
      toText(zone.zone.volume->getZMin()) + " to " + toText(zone.zone.volume->getZMax());
  if (!zone.isSeen) {
    return "no point of any frame is between the heights of " + name + ", " + range +
           "; are its heights in the frame of the points?";
  }
  if (zone.isNearlyUnseen()) {
    return name + ": under 1 % of the points inside its outline are between its heights, " + range +
           "; the others are between " + toText(zone.lowest, 3) + " and " + toText(zone.highest, 3) +
           ". Is it empty, or are its heights in another frame than the points?";
  }
  return std::nullopt;
}

}  // namespace

std::vector<std::string> warningsOf(const HeightWatch& heights) {
  std::vector<std::string> warnings;
  for (const HeightWatch::ZoneHeights& zone : heights.zones()) {
    if (std::optional<std::string> warning = warningOf(zone)) {
      warnings.push_back(*std::move(warning));
    }
  }
  return warnings;
}

}  // namespace orvantis::toolkit
