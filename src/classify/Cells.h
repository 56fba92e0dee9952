#pragma once

#include <cstdint>
#include <vector>

#include "classify/Grid.h"
#include "classify/Marking.h"
#include "classify/Palette.h"

namespace orvantis::filter::classify {

/// What a cell is before its code is known.
struct PlanCell {
  enum class Kind : std::uint8_t { Decided, Cut, Crossed, Tangled };

  std::uint32_t number;  ///< of its kind; of a decided one in the palette
  Kind kind;
};

/// The kinds of all cells, and what decides the points of each kind. See Grid.
struct PlanCells {
  std::vector<PlanCell> cells;
  PlanCell ofNaN{};
  PlanCell farAway{};
  Palette palette;
  std::vector<CutCell> cutCells;
  std::vector<CrossedCell> crossedCells;
  std::vector<TangledCell> tangledCells;
  std::vector<Decision> decisions;
};

/// The second phase of making a grid.
PlanCells cellsOf(const PlannedZones& zones, const MarkedPlan& plan);

}  // namespace orvantis::filter::classify
