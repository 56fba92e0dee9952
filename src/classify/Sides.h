#pragma once

#include <array>

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

  void tell(unsigned combinations, bool areInside) {
    known |= combinations;
    inside |= areInside ? combinations : 0U;
  }
};

/// Cells of one column, from a corner to the opposite one.
struct Box {
  double minX;
  double minY;
  double maxX;
  double maxY;
};

/// On which side of a curve a point is; nothing when it is too close to it.
unsigned sideOf(const Curve& curve, double x, double y);

/// Asks a shape for one point of each side of the curve that is not known and that a corner of the box shows.
void askSides(const detection::Zone& shape, const Box& box, const Curve& curve, Sides& sides);

/// Asks a shape for one point of each combination of sides that a sample of the box shows.
Sides askSides(const detection::Zone& shape, const Box& box, const std::array<const Curve*, 2>& curves);

}  // namespace orvantis::filter::classify
