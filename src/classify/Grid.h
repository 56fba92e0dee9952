#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "classify/Borders.h"
#include "classify/Folding.h"
#include "classify/FrozenZones.h"

namespace orvantis::filter::classify {

/// A cell that exactly one border crosses.
struct alignas(32) CutCell {
  Curve curve;
  std::array<std::uint16_t, 2> zones;  ///< the codes of the zones on its negative and its positive side
  std::uint8_t zone;                   ///< the bit of the zone whose border it is
};

/// A cell that several borders with at most three curves cross. It has the set of zones for each combination
/// of their sides.
struct alignas(32) CrossedCell {
  static constexpr std::size_t numCurves = 3;
  static constexpr std::uint16_t noSet =
      0xFFFF;  ///< not the code of any set: those of the other cells come after the sets

  std::array<std::uint16_t, numCurves> curves{};  ///< in Grid::curves; some may be repeated
  /// The code of the zones for each combination. The side of curve k is bit k of the combination's number.
  std::array<std::uint16_t, 1U << numCurves> zonesOn{};
  std::uint16_t decided{};  ///< the code of the zones that hold all of the cell
  std::uint64_t asked{};    ///< the zones that are asked when the combination is not known
};

/// What decides one zone in a tangled cell. Each combination of the sides of its curves has one verdict. The
/// side of the first curve is bit 0 of the combination's number, that of the second curve bit 1. The
/// combination has a bit in `known` and in `inside`. When it is not known, the zone is asked.
struct Decision {
  static constexpr std::size_t numCurves = 2;

  std::array<std::uint16_t, numCurves> curves;  ///< in Grid::curves; the same twice when there is only one
  std::uint8_t bit;
  std::uint8_t known : 4;
  std::uint8_t inside : 4;
};

/// A cell that more curves cross. It is decided zone by zone, with two decisions in each step: most cells
/// have one or two, so a processor predicts the end of the loop. A decision without a partner is repeated.
struct TangledCell {
  std::uint32_t first;
  std::uint16_t numPairs;
  std::uint16_t decided;  ///< the code of the zones that hold all of the cell
};

/// The plan, cell by cell. A cell has a 16-bit code. The first codes are sets of zones; then come the cut
/// cells, then the crossed cells, then the tangled cells.
struct Grid {
  /// The most memory that the tables take, without the curves.
  static constexpr std::size_t mostBytes = std::size_t{1} << 20U;
  static constexpr std::uint16_t curveOfZero = 0;  ///< a curve that decides nothing

  Folding columns;
  Folding rows;

  /// Column by column; then the codes of two cells that have no place on the plan.
  std::vector<std::uint16_t> codes;
  /// For points whose x or y is NaN.
  std::size_t cellOfNaN() const { return codes.size() - 2; }
  /// For points too far away for the lattice.
  std::size_t cellFarAway() const { return codes.size() - 1; }

  /// By code, with the flags: the zones that hold some point of such a cell, and openHeight; and openCell
  /// when these zones do not hold all points of the cell.
  std::vector<std::uint64_t> palette;
  std::uint32_t firstCut{};
  std::uint32_t firstCrossed{};
  std::uint32_t firstTangled{};

  std::vector<CutCell> cutCells;
  std::vector<CrossedCell> crossedCells;
  std::vector<TangledCell> tangledCells;
  std::vector<Decision> decisions;
  std::vector<Curve> curves;

  /// The zones that are asked for every point at their height.
  std::uint64_t alwaysAsked{};

  std::size_t bytes() const;
};

/// The finest grid within the bound on memory, beginning with the cell size that suits the zones.
Grid gridOf(const std::vector<FrozenZone>& zones, double safety);

}  // namespace orvantis::filter::classify
