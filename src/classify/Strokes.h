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

/// Cells of one column of a lattice, from row `first` to row `last`, and what one zone is there.
struct Stroke {
  enum class Kind : std::uint8_t {
    Inside,    ///< it holds them whole
    OneCurve,  ///< one of its curves passes through them
    TwoCurves,
    Asked  ///< what is to be done about it is unknown
  };

  std::uint16_t first;
  std::uint16_t last;
  std::uint8_t bit;
  Kind kind;
  std::uint8_t known : 4;  ///< of Sides; of one curve taken twice
  std::uint8_t inside : 4;
  std::array<std::uint32_t, 2> curves;  ///< in Strokes::curves
};

/// What all zones are in all cells.
struct Strokes {
  std::vector<Curve> curves;
  std::vector<Stroke> strokes;               ///< column by column, and zone by zone in a column
  std::vector<std::uint32_t> firstOfColumn;  ///< and one more: the end
};

/// The first phase of making a grid.
/// @param safety see Margins
/// @return nothing when it would take too much memory
std::optional<Strokes> strokesOf(const std::vector<OutlinedZone>& zones, const Lattice& lattice,
                                 double safety);

}  // namespace orvantis::filter::classify
