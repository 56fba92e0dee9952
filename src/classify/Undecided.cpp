#include "classify/Undecided.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include <filter/detection/Point.h>

#include "classify/Targets.h"

// Compiles this file once for each kind of processor that Highway knows.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "classify/Undecided.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using detection::Point;

// A point in the coordinates of the curves.
struct Position {
  float u;
  float v;
};

// The points of a block.
template <typename Real>
struct Points {
  HWY_INLINE Position operator[](std::size_t point) const {
    return {static_cast<float>(x[point] - middleX), static_cast<float>(y[point] - middleY)};
  }
  HWY_INLINE Point exact(std::size_t point) const { return {x[point], y[point]}; }

  const Real* x;
  const Real* y;
  Real middleX;
  Real middleY;
};

// A single number as a vector, for the processor's one instruction of multiplying and adding.
constexpr hn::CappedTag<float, 1> single;

HWY_INLINE float valueOf(const Curve& curve, const Position& at) {
  const auto u = hn::LoadU(single, &at.u);
  const auto v = hn::LoadU(single, &at.v);
  const auto q = hn::LoadU(single, &curve.q);
  const auto alongU = hn::MulAdd(q, u, hn::LoadU(single, &curve.a));
  const auto alongV = hn::MulAdd(q, v, hn::LoadU(single, &curve.b));
  return hn::GetLane(hn::MulAdd(alongU, u, hn::MulAdd(alongV, v, hn::LoadU(single, &curve.c))));
}

std::uint64_t bitIf(bool isInside, unsigned zone) {
  return (isInside ? std::uint64_t{1} : 0) << zone;
}

template <typename Real>
void decideCut(const Grid& grid, const ShapesByBit& shapes, const Points<Real>& allPoints,
               const PointList& list, std::uint64_t* masks) {
  // Copies: what is written could otherwise change them, for all the compiler knows.
  const Points<Real> points = allPoints;
  const CutCell* cells = grid.cutCells.data();
  const std::uint64_t* palette = grid.palette.data();
  const std::uint32_t firstCut = grid.firstCut;
  const std::size_t size = list.size;
  for (std::size_t i = 0; i < size; ++i) {
    const std::uint32_t point = list.point(i);
    const CutCell& cell = cells[list.code(i) - firstCut];
    const float value = valueOf(cell.curve, points[point]);
    // Looked up and not chosen: which side a point is on cannot be predicted.
    std::uint64_t zones = palette[cell.zones[value > 0.0F ? 1 : 0]];
    if (HWY_UNLIKELY(!(std::abs(value) > 1.0F))) {
      zones &= ~bitIf(true, cell.zone);
      zones |= bitIf(shapes[cell.zone]->within(points.exact(point)), cell.zone);
    }
    masks[point] &= zones;
  }
}

// On which sides of a crossed cell's curves a point is.
struct Sides {
  unsigned positive;  // bit k: the positive one of curve k
  bool areClear;
};

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

HWY_INLINE Sides sidesOf(const CrossedCell& cell, const Position& at) {
  Sides sides{0, true};
  for (unsigned k = 0; k < CrossedCell::numCurves; ++k) {
    const float value = valueOf({cell.q[k], cell.a[k], cell.b[k], cell.c[k]}, at);
    sides.positive |= (value > 0.0F ? 1U : 0U) << k;
    sides.areClear = sides.areClear && std::abs(value) > 1.0F;
  }
  return sides;
}

#else

// The curves side by side, and a fourth lane without meaning.
constexpr hn::CappedTag<float, 4> curves;
constexpr unsigned eachCurve = (1U << CrossedCell::numCurves) - 1;

HWY_INLINE unsigned bitsOf(hn::Mask<decltype(curves)> mask) {
  std::uint8_t bits{};
  hn::StoreMaskBits(curves, mask, &bits);
  return bits & eachCurve;
}

HWY_INLINE Sides sidesOf(const CrossedCell& cell, const Position& at) {
  const auto u = hn::Set(curves, at.u);
  const auto v = hn::Set(curves, at.v);
  const auto q = hn::LoadU(curves, cell.q.data());
  const auto alongU = hn::MulAdd(q, u, hn::LoadU(curves, cell.a.data()));
  const auto alongV = hn::MulAdd(q, v, hn::LoadU(curves, cell.b.data()));
  // What follows the last coefficient may be a denormal number as a float, which takes long to add.
  const auto c =
      hn::IfThenElseZero(hn::FirstN(curves, CrossedCell::numCurves), hn::LoadU(curves, cell.c.data()));
  const auto values = hn::MulAdd(alongU, u, hn::MulAdd(alongV, v, c));
  return {bitsOf(values > hn::Zero(curves)), bitsOf(hn::Abs(values) > hn::Set(curves, 1.0F)) == eachCurve};
}

#endif

// The bit of the decision's zone, if the point is inside.
HWY_INLINE std::uint64_t decideOne(const Grid& grid, const ShapesByBit& shapes, const Decision& decision,
                                   const Position& at, const Point& exact) {
  const float first = valueOf(grid.curves[decision.curves[0]], at);
  const float second = valueOf(grid.curves[decision.curves[1]], at);
  const unsigned sides = (first > 0.0F ? 1U : 0U) | (second > 0.0F ? 2U : 0U);
  const bool isClear = std::min(std::abs(first), std::abs(second)) > 1.0F;
  if (HWY_LIKELY(isClear && (decision.known >> sides & 1U) != 0)) {
    return bitIf((decision.inside >> sides & 1U) != 0, decision.bit);
  }
  return bitIf(shapes[decision.bit]->within(exact), decision.bit);
}

std::uint64_t decideEach(const Grid& grid, const ShapesByBit& shapes, const CellDecisions& cell,
                         const Position& at, const Point& exact) {
  std::uint64_t zones = grid.palette[cell.decided];
  const Decision* pair = grid.decisions.data() + cell.first;
  for (const Decision* end = pair + std::size_t{2} * cell.numPairs; pair != end; pair += 2) {
    zones |= decideOne(grid, shapes, pair[0], at, exact);
    zones |= decideOne(grid, shapes, pair[1], at, exact);
  }
  return zones;
}

template <typename Real>
void decideCrossed(const Grid& grid, const ShapesByBit& shapes, const Points<Real>& allPoints,
                   const PointList& list, std::uint64_t* masks) {
  const Points<Real> points = allPoints;
  const CrossedCell* cells = grid.crossedCells.data();
  const std::uint64_t* palette = grid.palette.data();
  const std::uint32_t firstCrossed = grid.firstCrossed;
  const std::size_t numCrossed = grid.crossedCells.size();
  const std::size_t size = list.size;
  for (std::size_t i = 0; i < size; ++i) {
    const std::uint32_t point = list.point(i);
    const std::uint32_t number = list.code(i) - firstCrossed;
    const Position at = points[point];
    if (HWY_LIKELY(number < numCrossed)) {
      const Sides sides = sidesOf(cells[number], at);
      const std::uint16_t code = cells[number].zonesOn[sides.positive];
      if (HWY_LIKELY(sides.areClear && code != CrossedCell::noSet)) {
        masks[point] &= palette[code];
        continue;
      }
    }
    masks[point] &= decideEach(grid, shapes, grid.cellDecisions[number], at, points.exact(point));
  }
}

template <typename Real>
void decideAll(const Grid& grid, const Heights& heights, const ShapesByBit& shapes, const Block<Real>& block,
               const Pending& pending) {
  const Points<Real> points{block.x, block.y, static_cast<Real>(grid.lattice.middleX()),
                            static_cast<Real>(grid.lattice.middleY())};
  decideCut(grid, shapes, points, pending.cut, block.masks);
  decideCrossed(grid, shapes, points, pending.crossed, block.masks);
  for (std::size_t i = 0; i < pending.heights.size; ++i) {
    const std::uint32_t point = pending.heights.point(i);
    block.masks[point] &= heights.zonesAt(block.z[point]);
  }
}

void decideFloats(const Grid& grid, const Heights& heights, const ShapesByBit& shapes,
                  const Block<float>& block, const Pending& pending) {
  decideAll(grid, heights, shapes, block, pending);
}

void decideDoubles(const Grid& grid, const Heights& heights, const ShapesByBit& shapes,
                   const Block<double>& block, const Pending& pending) {
  decideAll(grid, heights, shapes, block, pending);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvantis::filter::classify {

HWY_EXPORT(decideFloats);
HWY_EXPORT(decideDoubles);

void decide(const Grid& grid, const Heights& heights, const ShapesByBit& shapes, const Block<float>& block,
            const Pending& pending) {
  HWY_DYNAMIC_DISPATCH(decideFloats)(grid, heights, shapes, block, pending);
}

void decide(const Grid& grid, const Heights& heights, const ShapesByBit& shapes, const Block<double>& block,
            const Pending& pending) {
  HWY_DYNAMIC_DISPATCH(decideDoubles)(grid, heights, shapes, block, pending);
}

}  // namespace orvantis::filter::classify
#endif
