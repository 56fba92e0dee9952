#include "classify/Sides.h"

#include <cmath>

#include <filter/detection/Point.h>

namespace orvantis::filter::classify {

float valueOf(const Curve& curve, double x, double y) {
  return curve(static_cast<float>(x - static_cast<double>(curve.x)),
               static_cast<float>(y - static_cast<double>(curve.y)));
}

Sides askSides(const detection::Zone& shape, const Lattice& lattice, int column, int row,
               const std::array<Curve, 2>& curves, bool isOneCurve) {
  Sides sides;
  const int steps = isOneCurve ? 1 : 4;
  for (int i = 0; i <= steps; ++i) {
    for (int j = 0; j <= steps; ++j) {
      const double x = lattice.x0 + (column + static_cast<double>(i) / steps) * lattice.cell;
      const double y = lattice.y0 + (row + static_cast<double>(j) / steps) * lattice.cell;
      const float first = valueOf(curves[0], x, y);
      const float second = valueOf(curves[1], x, y);
      const bool isClear = std::abs(first) > 1.0F && std::abs(second) > 1.0F;
      const unsigned combination = 1U << ((first > 0.0F ? 1U : 0U) | (second > 0.0F ? 2U : 0U));
      if (isClear && (sides.known & combination) == 0) {
        sides.known |= combination;
        sides.inside |= shape.within(detection::Point(x, y)) ? combination : 0U;
      }
    }
  }
  return sides;
}

}  // namespace orvantis::filter::classify
