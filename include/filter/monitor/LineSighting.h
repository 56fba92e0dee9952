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
  /// The exact side of the reference point. ON is on the line itself, which counts as right of it.
  detection::CounterLineDirectionType side = detection::CounterLineDirectionType::ON;
  /// Whether the object is clear of the line on that side.
  bool isClear = false;
  /// From the line, prolonged without end, to the reference point, in the unit of the plan: above zero on the
  /// left, below zero on the right. Rounded, so it may be zero very close to the line.
  double distance = 0.0;
};

/// What LineCounter sees of one sighting. LineCounter keeps no history of a track; for a table of sightings,
/// call this for each of them.
/// @param clearance as in LineCounterOptions
/// @return nothing for a line whose ends are the same point or not finite, which has no sides, and for a
///   footprint that cannot be placed (see `referencePoint`)
/// @throws std::invalid_argument unless the clearance is zero or more and finite; nothing else
ORVANTIS_API std::optional<LineSighting> lineSighting(const detection::CounterLine& line,
                                                      const core::State& footprint, double clearance = 0.0);

}  // namespace orvantis::filter::monitor
