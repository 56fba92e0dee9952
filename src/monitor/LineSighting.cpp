#include <cmath>

#include <filter/monitor/LineSighting.h>
#include <filter/monitor/TrackedObject.h>

#include "monitor/Orientation.h"
#include "monitor/SidedLine.h"

namespace orvantis::filter::monitor {

using Side = detection::CounterLineDirectionType;

std::optional<LineSighting> lineSighting(const detection::CounterLine& line, const core::State& footprint,
                                         double clearance) {
  requireClearance(clearance);
  const auto sided = sidedLine(line, clearance);
  const auto reference = referencePoint(footprint);
  if (!sided || !reference) {
    return std::nullopt;
  }
  const int sign = orientation(sided->first, sided->second, *reference);
  LineSighting sighting;
  sighting.reference = *reference;
  sighting.side = sign > 0 ? Side::LEFT : sign < 0 ? Side::RIGHT : Side::ON;
  sighting.isClear = clearSide(*sided, footprint.polygon().outer(), *reference).has_value();
  // Takes the exact sign, because rounding may turn the sign of a product that is almost zero.
  const double amount = std::abs(crossProduct(sided->first, sided->second, *reference)) / sided->length;
  sighting.distance = sign == 0 ? 0.0 : std::copysign(amount, sign);
  return sighting;
}

}  // namespace orvantis::filter::monitor
