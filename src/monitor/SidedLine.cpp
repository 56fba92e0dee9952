#include "monitor/SidedLine.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "monitor/Orientation.h"

namespace orvantis::filter::monitor {

using Side = detection::CounterLineDirectionType;

void requireClearance(double clearance) {
  if (!(clearance >= 0.0) || !std::isfinite(clearance)) {
    throw std::invalid_argument("The clearance must be zero or more and finite");
  }
}

std::optional<SidedLine> sidedLine(const detection::CounterLine& line, double clearance) {
  const auto& points = line.getPoints();
  if (points.empty()) {
    return std::nullopt;  // the line was moved from
  }
  const double length = distance(points.front(), points.back());
  if (!std::isfinite(length) || !(length > 0.0)) {
    return std::nullopt;
  }
  return SidedLine{points.front(), points.back(), length, clearance * length};
}

std::optional<Side> clearSide(const SidedLine& line, const core::PlanarPolygon::ring_type& ring,
                              const core::PlanarPoint& reference) {
  const int sign = orientation(line.first, line.second, reference);
  const auto isClear = [&](const core::PlanarPoint& point) {
    return orientation(line.first, line.second, point) == sign &&
           std::abs(crossProduct(line.first, line.second, point)) >= line.clearance;
  };
  if (sign == 0 || !isClear(reference) || !std::all_of(ring.begin(), ring.end(), isClear)) {
    return std::nullopt;
  }
  return sign > 0 ? Side::LEFT : Side::RIGHT;
}

}  // namespace orvantis::filter::monitor
