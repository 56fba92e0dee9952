#pragma once

#include <array>
#include <cstdint>

#include <filter/detection/Zone.h>

#include "classify/Borders.h"

namespace orvantis::filter::classify {

/// The verdicts on the combinations of sides of up to two curves; see Decision.
struct Sides {
  // Of a single curve, taken twice.
  static constexpr unsigned negative = 0b0001;
  static constexpr unsigned positive = 0b1000;
  static constexpr unsigned both = negative | positive;

  unsigned known = 0;
  unsigned inside = 0;
};

/// The value of a curve at a point of the plan.
float valueOf(const Curve& curve, double x, double y);

/// Asks a shape for one point of each combination of sides that a sample of the cell shows.
Sides askSides(const detection::Zone& shape, const Lattice& lattice, int column, int row,
               const std::array<Curve, 2>& curves, bool isOneCurve);

}  // namespace orvantis::filter::classify
