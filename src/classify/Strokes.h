#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "classify/Borders.h"
#include "classify/FrozenZones.h"
#include "classify/Lattice.h"
#include "classify/Sides.h"

namespace orvantis::filter::classify {

struct OutlinedZone {
  const FrozenZone* zone;
  Outline outline;
};

/// Cells of one column of a lattice, from row `first` to row `last`, and how one zone is decided in them.
struct Stroke {
  enum class Kind : std::uint8_t {
    Inside,    ///< the zone holds all of them
    OneCurve,  ///< one curve of the zone passes through them
    TwoCurves,
    Asked  ///< the zone is asked
  };

  std::uint16_t first;
  std::uint16_t last;
  std::uint8_t bit;
  Kind kind;
  std::uint8_t known : 4;  ///< as in Sides; a single curve is taken twice
  std::uint8_t inside : 4;
  std::array<std::uint32_t, 2> curves;  ///< in Strokes::curves
};

/// How all zones are decided in all cells.
struct Strokes {
  std::vector<Curve> curves;
  std::vector<Stroke> strokes;               ///< column by column, and zone by zone in a column
  std::vector<std::uint32_t> firstOfColumn;  ///< and the end of the last column
};

/// The first phase of making a grid.
/// @param safety see Margins
/// @return nothing when it would take too much memory
std::optional<Strokes> strokesOf(const std::vector<OutlinedZone>& zones, const Lattice& lattice,
                                 double safety);

}  // namespace orvantis::filter::classify
