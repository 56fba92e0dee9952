#pragma once

#include <array>

#include <filter/detection/Zone.h>

#include "classify/Borders.h"

namespace orvantis::filter::classify {

/// The verdicts on the combinations of sides of up to two curves; see Decision.
struct Sides {
  // The sides of a single curve, which is both the first and the second curve.
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

/// The extent of cells of one column.
struct Box {
  double minX;
  double minY;
  double maxX;
  double maxY;
};

/// On which side of a curve a point is; 0 when it is too close to the curve.
unsigned sideOf(const Curve& curve, double x, double y);

/// Asks a shape about one point on each side of the curve that is not known yet and that has a corner of the
/// box.
void askSides(const detection::Zone& shape, const Box& box, const Curve& curve, Sides& sides);

/// The combination of sides of two curves on which a point is; 0 when it is too close to one of them.
unsigned combinationOf(const std::array<const Curve*, 2>& curves, double x, double y);

/// Asks a shape about one point of each combination of sides that is not known yet and that samples of the
/// box find.
void askSides(const detection::Zone& shape, const Box& box, const std::array<const Curve*, 2>& curves,
              Sides& sides);

}  // namespace orvantis::filter::classify
