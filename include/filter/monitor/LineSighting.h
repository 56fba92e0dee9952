#pragma once

#include <optional>

#include <core/Planar.h>
#include <core/State.h>
#include <filter/detection/CounterLine.h>
#include <orvantis/Api.h>

namespace orvantis::filter::monitor {

/// How one sighting of an object lies beside a counter line, by the rules of LineCounter.
struct LineSighting {
  core::PlanarPoint reference{0.0, 0.0};  ///< see `referencePoint`
  /// Of the reference point, exactly: ON is on the line itself, which counts as right of it.
  detection::CounterLineDirectionType side = detection::CounterLineDirectionType::ON;
  /// Whether the object is clear of the line on that side.
  bool isClear = false;
  /// Of the reference point from the line, prolonged without end, in the unit of the plan: above zero on the
  /// left, below zero on the right. Rounded, so it may be zero a hair beside the line.
  double distance = 0.0;
};

/// What LineCounter sees of one sighting. It keeps no history of a track; who wants a table of its sightings
/// asks for each.
/// @param clearance as in LineCounterOptions
/// @return nothing for a line without sides, whose ends are the same point or not finite, and for a footprint
///   that cannot be placed
/// @throws std::invalid_argument unless the clearance is zero or more and finite
ORVANTIS_API std::optional<LineSighting> lineSighting(const detection::CounterLine& line,
                                                      const core::State& footprint, double clearance = 0.0);

}  // namespace orvantis::filter::monitor
