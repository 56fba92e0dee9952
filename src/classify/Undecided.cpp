#include "classify/Undecided.h"

#include <algorithm>
#include <cmath>

#include <filter/detection/Point.h>

namespace orvantis::filter::classify {
namespace {

using detection::Point;

std::uint64_t bitIf(bool isInside, unsigned zone) {
  return (isInside ? std::uint64_t{1} : 0) << zone;
}

}  // namespace

template <typename Real>
void decideCut(const Grid& grid, const ShapesByBit& shapes, const Real* x, const Real* y,
               const PointList& list, std::uint64_t* masks) {
  for (std::size_t i = 0; i < list.size; ++i) {
    const std::uint32_t point = list.point(i);
    const std::uint32_t number = list.code(i) - grid.firstCut;
    const CutCell& cell = grid.cutCells[number];
    const double value = cell.curve(x[point], y[point]);
    // Looked up and not chosen: which side a point is on cannot be predicted.
    std::uint64_t zones = cell.zones[value > 0.0 ? 1 : 0];
    if (!(std::abs(value) > 1.0)) [[unlikely]] {
      const unsigned zone = grid.cutZones[number];
      zones &= ~bitIf(true, zone);
      zones |= bitIf(shapes[zone]->within(Point(x[point], y[point])), zone);
    }
    masks[point] &= zones;
  }
}

namespace {

// The bit of the decision's zone, if the point is inside.
inline std::uint64_t decide(const Grid& grid, const ShapesByBit& shapes, const Decision& decision, double x,
                            double y) {
  const double first = grid.curves[decision.curves[0]](x, y);
  const double second = grid.curves[decision.curves[1]](x, y);
  const unsigned sides = (first > 0.0 ? 1U : 0U) | (second > 0.0 ? 2U : 0U);
  const bool isClear = std::min(std::abs(first), std::abs(second)) > 1.0;
  if (isClear && (decision.known >> sides & 1U) != 0) [[likely]] {
    return bitIf((decision.inside >> sides & 1U) != 0, decision.bit);
  }
  return bitIf(shapes[decision.bit]->within(Point(x, y)), decision.bit);
}

std::uint64_t decideEach(const Grid& grid, const ShapesByBit& shapes, const CrossedCell& cell, double x,
                         double y) {
  std::uint64_t zones = grid.palette[cell.decided];
  const Decision* pair = grid.decisions.data() + cell.firstDecision;
  for (const Decision* end = pair + std::size_t{2} * cell.numPairs; pair != end; pair += 2) {
    zones |= decide(grid, shapes, pair[0], x, y);
    zones |= decide(grid, shapes, pair[1], x, y);
  }
  return zones;
}

}  // namespace

template <typename Real>
void decideCrossed(const Grid& grid, const ShapesByBit& shapes, const Real* x, const Real* y,
                   const PointList& list, std::uint64_t* masks) {
  for (std::size_t i = 0; i < list.size; ++i) {
    const std::uint32_t point = list.point(i);
    const CrossedCell& cell = grid.crossedCells[list.code(i) - grid.firstCrossed];
    const double first = grid.curves[cell.curves[0]](x[point], y[point]);
    const double second = grid.curves[cell.curves[1]](x[point], y[point]);
    const double third = grid.curves[cell.curves[2]](x[point], y[point]);
    const unsigned sides = (first > 0.0 ? 1U : 0U) | (second > 0.0 ? 2U : 0U) | (third > 0.0 ? 4U : 0U);
    const bool isClear = std::min({std::abs(first), std::abs(second), std::abs(third)}) > 1.0;
    const std::uint16_t code = cell.zonesOn[sides];
    if (isClear && code != CrossedCell::noSet) [[likely]] {
      masks[point] &= grid.palette[code];
    } else {
      masks[point] &= decideEach(grid, shapes, cell, x[point], y[point]);
    }
  }
}

template <typename Real>
void decideHeights(const Heights& heights, const Real* z, const PointList& list, std::uint64_t* masks) {
  for (std::size_t i = 0; i < list.size; ++i) {
    masks[list.point(i)] &= heights.zonesAt(z[list.point(i)]);
  }
}

template void decideCut(const Grid&, const ShapesByBit&, const float*, const float*, const PointList&,
                        std::uint64_t*);
template void decideCut(const Grid&, const ShapesByBit&, const double*, const double*, const PointList&,
                        std::uint64_t*);
template void decideCrossed(const Grid&, const ShapesByBit&, const float*, const float*, const PointList&,
                            std::uint64_t*);
template void decideCrossed(const Grid&, const ShapesByBit&, const double*, const double*, const PointList&,
                            std::uint64_t*);
template void decideHeights(const Heights&, const float*, const PointList&, std::uint64_t*);
template void decideHeights(const Heights&, const double*, const PointList&, std::uint64_t*);

}  // namespace orvantis::filter::classify
