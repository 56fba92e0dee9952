#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "classify/Grid.h"
#include "classify/Palette.h"
#include "classify/Strokes.h"

namespace orvantis::filter::classify {

/// A cell before its code is known.
struct PlanCell {
  enum class Kind : std::uint8_t { Decided, Cut, Crossed, Tangled };

  std::uint32_t number;  ///< among the cells of its kind; for a decided cell, in the palette
  Kind kind;
};

/// Equal cells that follow each other in one column.
struct CellRun {
  PlanCell cell;
  std::uint16_t length;
};

/// All cells, and the tables that decide the points of each kind. See Grid.
struct PlanCells {
  std::vector<CellRun> runs;  ///< column by column
  PlanCell ofNaN{};
  PlanCell farAway{};
  Palette palette;
  std::vector<CutCell> cutCells;
  std::vector<CrossedCell> crossedCells;
  std::vector<TangledCell> tangledCells;
  std::vector<Decision> decisions;
  std::vector<Curve> curves;

  std::size_t numCodes() const {
    return palette.sets().size() + cutCells.size() + crossedCells.size() + tangledCells.size();
  }
};

/// The second phase of making a grid.
/// @param alwaysAsked the zones that the strokes leave out
/// @return nothing when there would be more codes than a grid may have
std::optional<PlanCells> cellsOf(const std::vector<OutlinedZone>& zones, const Strokes& strokes, int numRows,
                                 std::uint64_t alwaysAsked);

}  // namespace orvantis::filter::classify
