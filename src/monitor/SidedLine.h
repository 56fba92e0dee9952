#pragma once

#include <optional>

#include <core/Planar.h>
#include <filter/detection/CounterLine.h>

namespace orvantis::filter::monitor {

/// A counter line that divides the plan into two sides, with the clearance from which on an object is clear
/// of it.
struct SidedLine {
  core::PlanarPoint first;
  core::PlanarPoint second;
  double length;     ///< of the segment, above zero
  double clearance;  ///< times the length, to be compared with a cross product
};

/// @throws std::invalid_argument unless the clearance is zero or more and finite
void requireClearance(double clearance);

/// @return nothing for a line whose ends are the same point or not finite, since it has no sides
std::optional<SidedLine> sidedLine(const detection::CounterLine& line, double clearance);

/// The side on which a sighting is clear of the line, if it is: all vertices of the footprint's outer ring
/// and the reference point lie strictly on that side, each at least the clearance off the line.
/// @param ring of finite coordinates
std::optional<detection::CounterLineDirectionType> clearSide(const SidedLine& line,
                                                             const core::PlanarPolygon::ring_type& ring,
                                                             const core::PlanarPoint& reference);

}  // namespace orvantis::filter::monitor
