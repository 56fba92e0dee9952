#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "classify/Borders.h"
#include "classify/FrozenZones.h"
#include "classify/Lattice.h"

namespace orvantis::filter::classify {

/// A cell that exactly one border crosses.
struct CutCell {
  Curve curve;
  std::array<std::uint16_t, 2>
      zones;          ///< the codes of the sets of zones on its negative and its positive side
  std::uint8_t zone;  ///< the bit of the zone whose border it is
};

/// What decides one zone in a cell that several borders cross. Each combination of the sides of its curves
/// has one verdict: with the first curve's side as bit 0 and the second one's as bit 1 of its number, the
/// combination has a bit in `known` and `inside`. What is not known is the zone's to answer.
struct Decision {
  static constexpr std::size_t numCurves = 2;

  std::array<std::uint16_t, numCurves> curves;  ///< in Grid::curves; twice the same when there is only one
  std::uint8_t bit;
  std::uint8_t known : 4;
  std::uint8_t inside : 4;
};

/// A cell that several borders cross, but at most three curves: the set of zones on each combination of their
/// sides. It lies in one line of the cache.
struct alignas(64) CrossedCell {
  static constexpr std::size_t numCurves = 3;
  static constexpr std::uint16_t noSet = 0xFFFF;  ///< never a set's code: the crossed cells' come after them

  using Coefficients = std::array<float, numCurves>;  ///< by curve; some curves stand several times
  Coefficients q{};
  Coefficients a{};
  Coefficients b{};
  Coefficients c{};
  /// By combination, with the side of curve k as bit k of its number, the code of its zones.
  std::array<std::uint16_t, 1U << numCurves> zonesOn{};
};

/// What decides a cell zone by zone: a crossed one where it has no set, and a tangled one, which more curves
/// cross, in any case. By pairs of decisions, of one zone or two mostly, so that the loop over them is
/// foreseen. A decision without a partner stands twice.
struct CellDecisions {
  std::uint32_t first;
  std::uint16_t numPairs;
  std::uint16_t decided;  ///< the code of the zones that hold all of the cell
};

/// The plan, cell by cell. A cell has a 16-bit code. The first ones mean a set of zones; then come the cut
/// cells, then the crossed ones, then the tangled ones.
struct Grid {
  /// What the tables may take, beside the curves.
  static constexpr std::size_t mostBytes = std::size_t{1} << 20U;

  Lattice lattice;

  /// Column by column. Padded, so that it can be read in words.
  std::vector<std::uint16_t> codes;

  /// By code. The last one, at firstCut, stands for all cells that are not decided: it has all bits, so that
  /// what remains is the set of zones at the height.
  std::vector<std::uint64_t> palette;
  std::uint32_t firstCut{};
  std::uint32_t firstCrossed{};
  std::uint32_t codeOfNaN{};      ///< for points with a coordinate of the plan that is not a number
  std::uint32_t codeOfFarAway{};  ///< for points too far away for the lattice

  std::vector<CutCell> cutCells;
  std::vector<CrossedCell> crossedCells;
  std::vector<CellDecisions> cellDecisions;  ///< of the crossed cells, then of the tangled ones
  std::vector<Decision> decisions;
  static constexpr std::uint16_t curveOfZero = 0;  ///< decides nothing
  std::vector<Curve> curves;

  /// The zones that are asked for every point at their height.
  std::uint64_t alwaysAsked{};

  std::size_t bytes() const;
};

/// The finest grid, from the cell that suits the zones upwards, within the bound on memory.
Grid gridOf(const std::vector<FrozenZone>& zones, double safety);

}  // namespace orvantis::filter::classify
