#include "classify/Undecided.h"

#include <cmath>

#include <filter/detection/Point.h>

namespace orvantis::filter::classify {
namespace {

using detection::Point;

std::uint64_t bitOf(unsigned zone) {
  return std::uint64_t{1} << zone;
}

// The verdict of one zone in a crossed cell.
bool isInside(const Grid& grid, const Shapes& shapes, const Decision& decision, const Point& point) {
  const std::uint32_t* curves = grid.decisionCurves.data() + decision.firstCurve;
  unsigned sides = 0;
  bool isClear = true;
  for (unsigned k = 0; k < decision.numCurves; ++k) {
    const double value = grid.curves[curves[k]](point.x(), point.y());
    sides |= (value > 0.0 ? 1U : 0U) << k;
    isClear = isClear && std::abs(value) > 1.0;
  }
  const bool isKnown = (decision.known >> sides & 1U) != 0;
  return isClear && isKnown ? (decision.inside >> sides & 1U) != 0 : shapes[decision.bit]->within(point);
}

}  // namespace

template <typename Real>
void decideCut(const Grid& grid, const Shapes& shapes, const Real* x, const Real* y, const PointList& list,
               std::uint64_t* masks) {
  for (std::uint32_t i = 0; i < list.size; ++i) {
    const std::uint32_t point = list.points[i];
    const std::uint32_t number = list.codes[i] - grid.firstCut;
    const CutCell& cell = grid.cutCells[number];
    const double value = cell.curve(x[point], y[point]);
    std::uint64_t zones = value > 0.0 ? cell.positive : cell.negative;
    if (!(std::abs(value) > 1.0)) [[unlikely]] {
      const unsigned zone = grid.cutZones[number];
      zones &= ~bitOf(zone);
      zones |= shapes[zone]->within(Point(x[point], y[point])) ? bitOf(zone) : 0;
    }
    masks[point] &= zones;
  }
}

template <typename Real>
void decideCrossed(const Grid& grid, const Shapes& shapes, const Real* x, const Real* y,
                   const PointList& list, std::uint64_t* masks) {
  for (std::uint32_t i = 0; i < list.size; ++i) {
    const std::uint32_t point = list.points[i];
    const Point at(x[point], y[point]);
    const CrossedCell& cell = grid.crossedCells[list.codes[i] - grid.firstCrossed];
    std::uint64_t zones = cell.decided;
    const Decision* decision = grid.decisions.data() + cell.firstDecision;
    for (const Decision* end = decision + cell.numDecisions; decision != end; ++decision) {
      zones |= isInside(grid, shapes, *decision, at) ? bitOf(decision->bit) : 0;
    }
    masks[point] &= zones;
  }
}

template void decideCut(const Grid&, const Shapes&, const float*, const float*, const PointList&,
                        std::uint64_t*);
template void decideCut(const Grid&, const Shapes&, const double*, const double*, const PointList&,
                        std::uint64_t*);
template void decideCrossed(const Grid&, const Shapes&, const float*, const float*, const PointList&,
                            std::uint64_t*);
template void decideCrossed(const Grid&, const Shapes&, const double*, const double*, const PointList&,
                            std::uint64_t*);

}  // namespace orvantis::filter::classify
