#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "classify/Cells.h"

namespace orvantis::filter::classify {

/// Makes cells from the strokes in them.
class CellMaker {
 public:
  explicit CellMaker(const std::vector<Curve>& curves) : curves_(curves) {
    cells_.curves.push_back({});
    lastCut_.assign(curves.size(), none);
    numbers_.assign(curves.size(), 0);
  }

  /// @param held the zones that hold the cell whole
  /// @param borders the strokes of the other zones in it
  PlanCell cellOf(std::uint64_t held, const std::vector<const Stroke*>& borders);

  /// A cell that asks these zones.
  PlanCell askingCell(std::uint64_t held, std::uint64_t zones);

  PlanCells& cells() { return cells_; }

 private:
  static constexpr std::uint32_t none = ~std::uint32_t{0};

  // The zones on the negative and on the positive side of a curve.
  using CutZones = std::array<std::uint64_t, 2>;
  struct Cut {
    CutZones zones;
    std::uint32_t before;  // the cut cell before it with the same curve
  };

  std::uint16_t codeOf(std::uint64_t zones);
  PlanCell cutCell(std::uint64_t held, const Stroke& border);
  PlanCell crossedCell(const CrossedCell& cell);
  PlanCell tangledCell(std::uint64_t held);
  Decision decisionOf(const Stroke& border);
  std::uint16_t numberOf(std::uint32_t curve);

  const std::vector<Curve>& curves_;
  PlanCells cells_;
  std::vector<std::uint32_t> lastCut_;      // by curve, the last of its cut cells
  std::vector<Cut> cuts_;                   // by cut cell
  std::vector<std::uint32_t> lastCrossed_;  // by number of a curve, the last crossed cell that it is first in
  std::vector<std::uint32_t> crossedBefore_;  // by crossed cell, the one before it with the same first curve
  std::vector<std::uint16_t> numbers_;        // by curve, its number in the cells' curves; 0: no number yet
  std::vector<Decision> decisions_;           // of one cell
};

}  // namespace orvantis::filter::classify
