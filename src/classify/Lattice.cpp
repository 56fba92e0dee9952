#include "classify/Lattice.h"

namespace orvantis::filter::classify {
namespace {

// A square site has at least this many cells a side and fewer than twice as many, and a long one as many in
// all.
constexpr double cellsPerSide = 256.0;
// A long side has fewer than twice as many as this: what curves lose as floats grows with the distance.
constexpr double cellsPerLongSide = 1024.0;
constexpr double smallestCell = 0x1p-13;
// The corner of the lattice is then at most 2^23 cells from the origin, which a float holds exactly.
constexpr double cellPerCoordinate = 0x1p-22;
// The cells around the site. What lies outside the lattice is looked up at its rim, which no border may mark:
// the marks at the ends of an arc reach almost four cells beyond it.
constexpr int margin = 5;

}  // namespace

double suitableCell(const Bounds& site) {
  if (site.isEmpty()) {
    return 1.0;
  }
  const double squareSide = std::sqrt((site.maxX - site.minX) * (site.maxY - site.minY));
  const double wanted = std::max({squareSide / cellsPerSide, site.longSide() / cellsPerLongSide, smallestCell,
                                  2.0 * site.largestCoordinate() * cellPerCoordinate});
  return std::exp2(std::floor(std::log2(wanted)));
}

Lattice latticeOver(const Bounds& site, double cell) {
  if (site.isEmpty()) {
    return {};
  }
  Lattice lattice;
  lattice.cell = cell;
  lattice.x0 = (std::floor(site.minX / cell) - margin) * cell;
  lattice.y0 = (std::floor(site.minY / cell) - margin) * cell;
  lattice.columns = static_cast<int>(std::floor((site.maxX - lattice.x0) / cell)) + 1 + margin;
  lattice.rows = static_cast<int>(std::floor((site.maxY - lattice.y0) / cell)) + 1 + margin;
  return lattice;
}

}  // namespace orvantis::filter::classify
