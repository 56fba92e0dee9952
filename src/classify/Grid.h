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
  std::array<std::uint16_t, 2> zones;  ///< the codes of the sets on its negative and its positive side
  std::uint8_t zone;                   ///< the bit of the zone whose border it is
};

/// A cell that several borders cross, but at most three curves: the set of zones on each combination of their
/// sides.
struct alignas(32) CrossedCell {
  static constexpr std::size_t numCurves = 3;
  static constexpr std::uint16_t noSet = 0xFFFF;  ///< never a set's code: the crossed cells' come after them

  std::array<std::uint16_t, numCurves> curves{};  ///< in Grid::curves; some stand several times
  /// By combination, with the side of curve k as bit k of its number, the code of its zones.
  std::array<std::uint16_t, 1U << numCurves> zonesOn{};
  std::uint16_t decided{};  ///< the code of the zones that hold all of the cell
  std::uint64_t asked{};    ///< the other zones, which are asked where nothing else is known
};

/// What decides one zone in a tangled cell. Each combination of the sides of its curves has one verdict: with
/// the first curve's side as bit 0 and the second one's as bit 1 of its number, the combination has a bit in
/// `known` and `inside`. What is not known is the zone's to answer.
struct Decision {
  static constexpr std::size_t numCurves = 2;

  std::array<std::uint16_t, numCurves> curves;  ///< in Grid::curves; twice the same when there is only one
  std::uint8_t bit;
  std::uint8_t known : 4;
  std::uint8_t inside : 4;
};

/// A cell that more curves cross: zone by zone. By pairs of decisions, of one zone or two mostly, so that the
/// loop over them is foreseen. A decision without a partner stands twice.
struct TangledCell {
  std::uint32_t first;
  std::uint16_t numPairs;
  std::uint16_t decided;  ///< the code of the zones that hold all of the cell
};

/// The plan, cell by cell. A cell has a 16-bit code. The first ones mean a set of zones; then come the cut
/// cells, then the crossed ones, then the tangled ones.
struct Grid {
  /// What the tables may take, beside the curves.
  static constexpr std::size_t mostBytes = std::size_t{1} << 20U;
  static constexpr std::uint16_t curveOfZero = 0;  ///< decides nothing

  Folding columns;
  Folding rows;

  /// Column by column; then those of two cells that are nowhere.
  std::vector<std::uint16_t> codes;
  /// For points with a coordinate of the plan that is not a number.
  std::size_t cellOfNaN() const { return codes.size() - 2; }
  /// For points too far away for the lattice.
  std::size_t cellFarAway() const { return codes.size() - 1; }

  /// By code, with the flags: the zones that hold some point of such a cell, and openHeight; openCell where
  /// they do not hold all of them.
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

/// The finest grid, from the cell that suits the zones upwards, within the bound on memory.
Grid gridOf(const std::vector<FrozenZone>& zones, double safety);

}  // namespace orvantis::filter::classify
