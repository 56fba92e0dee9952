#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "classify/Grid.h"
#include "classify/Palette.h"
#include "classify/Strokes.h"

namespace orvantis::filter::classify {

/// What a cell is before its code is known.
struct PlanCell {
  enum class Kind : std::uint8_t { Decided, Cut, Crossed, Tangled };

  std::uint32_t number;  ///< of its kind; of a decided one in the palette
  Kind kind;
};

/// Cells of one column in succession that are the same.
struct CellRun {
  PlanCell cell;
  std::uint16_t length;
};

/// What all cells are, and what decides the points of each kind. See Grid.
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
