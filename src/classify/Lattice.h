#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvantis::filter::classify {

/// An upright box of the plan.
struct Bounds {
  double minX = std::numeric_limits<double>::infinity();
  double minY = std::numeric_limits<double>::infinity();
  double maxX = -std::numeric_limits<double>::infinity();
  double maxY = -std::numeric_limits<double>::infinity();

  void include(double x, double y) {
    minX = std::min(minX, x);
    minY = std::min(minY, y);
    maxX = std::max(maxX, x);
    maxY = std::max(maxY, y);
  }
  void include(const Bounds& other) {
    minX = std::min(minX, other.minX);
    minY = std::min(minY, other.minY);
    maxX = std::max(maxX, other.maxX);
    maxY = std::max(maxY, other.maxY);
  }
  bool isEmpty() const { return !(minX <= maxX); }
  double longSide() const { return std::max(maxX - minX, maxY - minY); }
  double largestCoordinate() const {
    return std::max({std::abs(minX), std::abs(minY), std::abs(maxX), std::abs(maxY)});
  }
};

/// Square cells over the plan. The cell is a power of two and the corner a multiple of it, so that a float
/// holds both exactly and the cell of a point is found with one rounding.
struct Lattice {
  /// A point farther than this from the corner in y is not looked up.
  static constexpr double farthest = 0x1p25;

  double x0 = 0.0;
  double y0 = 0.0;
  double cell = 1.0;
  int columns = 1;
  int rows = 1;

  /// How far from the border of a cell a point may lie and still be put into it, and more than that: what the
  /// marks of a border are widened by.
  double slack() const { return std::ldexp(cell, -8) + 1.0e-6; }

  int column(double x) const { return index(x - x0, columns); }
  int row(double y) const { return index(y - y0, rows); }

 private:
  int index(double offset, int count) const {
    return static_cast<int>(std::clamp(std::floor(offset / cell), 0.0, count - 1.0));
  }
};

/// The cell that suits a site: see the rule in PointClassifier.h.
double suitableCell(const Bounds& site);

/// The lattice that covers the site with a margin, so that no border marks its rim but a steep edge.
Lattice latticeOver(const Bounds& site, double cell);

}  // namespace orvantis::filter::classify
