#include "classify/Undecided.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include <filter/detection/Point.h>

#include "classify/Flags.h"
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

// A point of the plan.
template <typename Real>
struct Position {
  Real x;
  Real y;
};

// A vector of one number, so that the processor multiplies and adds in one instruction.
constexpr hn::CappedTag<float, 1> single;

template <typename Real>
HWY_INLINE float valueOf(const Curve& curve, const Position<Real>& at) {
  const auto u = hn::Set(single, static_cast<float>(at.x - static_cast<Real>(curve.x)));
  const auto v = hn::Set(single, static_cast<float>(at.y - static_cast<Real>(curve.y)));
  const auto q = hn::LoadU(single, &curve.q);
  const auto alongU = hn::MulAdd(q, u, hn::LoadU(single, &curve.a));
  const auto alongV = hn::MulAdd(q, v, hn::LoadU(single, &curve.b));
  return hn::GetLane(hn::MulAdd(alongU, u, hn::MulAdd(alongV, v, hn::LoadU(single, &curve.c))));
}

constexpr std::uint64_t bitIf(bool isInside, unsigned zone) {
  return (isInside ? std::uint64_t{1} : 0) << zone;
}

template <typename Real>
class Decider {
 public:
  Decider(const Grid& grid, const ShapesByBit& shapes) : grid_(grid), shapes_(shapes) {}

  // The zones that hold a point of such a cell, and perhaps the flag of its height.
  HWY_INLINE std::uint64_t zonesAt(std::uint32_t code, const Position<Real>& at) const {
    if (HWY_LIKELY(code < grid_.firstCrossed)) {
      return zonesInCut(grid_.cutCells[code - grid_.firstCut], at);
    }
    return code < grid_.firstTangled ? zonesInCrossed(grid_.crossedCells[code - grid_.firstCrossed], at)
                                     : zonesInTangled(grid_.tangledCells[code - grid_.firstTangled], at);
  }

 private:
  HWY_INLINE std::uint64_t zonesInCut(const CutCell& cell, const Position<Real>& at) const {
    const float value = valueOf(cell.curve, at);
    // Looked up without a branch, because a processor cannot predict the side of a point.
    const std::uint64_t zones = grid_.palette[cell.zones[value > 0.0F ? 1 : 0]];
    if (HWY_LIKELY(std::abs(value) > 1.0F)) {
      return zones;
    }
    return (zones & ~bitIf(true, cell.zone)) | asked(cell.zone, at);
  }

  std::uint64_t zonesInCrossed(const CrossedCell& cell, const Position<Real>& at) const {
    unsigned sides = 0;
    unsigned areClear = 1;
    for (unsigned k = 0; k < CrossedCell::numCurves; ++k) {
      const float value = valueOf(grid_.curves[cell.curves[k]], at);
      sides |= (value > 0.0F ? 1U : 0U) << k;
      areClear &= std::abs(value) > 1.0F ? 1U : 0U;
    }
    const std::uint16_t code = cell.zonesOn[sides];
    if (HWY_LIKELY(areClear != 0 && code != CrossedCell::noSet)) {
      return grid_.palette[code];
    }
    std::uint64_t zones = grid_.palette[cell.decided];
    for (std::uint64_t rest = cell.asked; rest != 0; rest &= rest - 1) {
      zones |= asked(static_cast<unsigned>(std::countr_zero(rest)), at);
    }
    return zones;
  }

  std::uint64_t zonesInTangled(const TangledCell& cell, const Position<Real>& at) const {
    std::uint64_t zones = grid_.palette[cell.decided];
    const Decision* pair = grid_.decisions.data() + cell.first;
    for (const Decision* end = pair + std::size_t{2} * cell.numPairs; pair != end; pair += 2) {
      zones |= decided(pair[0], at);
      zones |= decided(pair[1], at);
    }
    return zones;
  }

  HWY_INLINE std::uint64_t decided(const Decision& decision, const Position<Real>& at) const {
    const float first = valueOf(grid_.curves[decision.curves[0]], at);
    const float second = valueOf(grid_.curves[decision.curves[1]], at);
    const unsigned sides = (first > 0.0F ? 1U : 0U) | (second > 0.0F ? 2U : 0U);
    const bool isClear = std::min(std::abs(first), std::abs(second)) > 1.0F;
    if (HWY_LIKELY(isClear && (decision.known >> sides & 1U) != 0)) {
      return bitIf((decision.inside >> sides & 1U) != 0, decision.bit);
    }
    return asked(decision.bit, at);
  }

  // Asks the zone itself. The bit of the zone if the point is inside, else 0.
  std::uint64_t asked(unsigned zone, const Position<Real>& at) const {
    return bitIf(shapes_[zone]->within(detection::Point(at.x, at.y)), zone);
  }

  const Grid& grid_;
  const ShapesByBit& shapes_;
};

// Leaves out the points for which the height alone decides. @return how many are left
std::size_t leaveOutDecided(PointList& list, std::uint64_t* masks) {
  std::size_t numLeft = 0;
  for (std::size_t i = 0; i < list.size; ++i) {
    const std::uint32_t point = list.points[i];
    const std::uint64_t mask = masks[point];
    masks[point] = mask & (zoneBits | openHeight);
    // Always written; the list grows only when the point stays. A branch would be mispredicted too often.
    list.points[numLeft] = point;
    numLeft += isStillOpen(mask) ? 1U : 0U;
  }
  return numLeft;
}

template <typename Real>
void decideAll(const Grid& grid, const Heights& heights, const ShapesByBit& shapes, const Block<Real>& block,
               Pending& pending) {
  const Decider<Real> decider(grid, shapes);
  const PointsView<Real> points = block.points;
  const std::uint16_t* codes = grid.codes.data();
  const std::size_t numOpen = leaveOutDecided(pending.cell, block.masks);
  for (std::size_t i = 0; i < numOpen; ++i) {
    const std::uint32_t point = pending.cell.points[i];
    const std::size_t offset = point * points.stride;
    const Position<Real> at{valueAt<Real>(points.x, offset), valueAt<Real>(points.y, offset)};
    block.masks[point] &= decider.zonesAt(codes[pending.cells[point]], at);
  }
  for (std::size_t i = 0; i < pending.height.size; ++i) {
    const std::uint32_t point = pending.height.points[i];
    const Real z = valueAt<Real>(points.z, point * points.stride);
    block.masks[point] &= heights.zonesAt(static_cast<double>(z), pending.buckets[point] & 0xFFFFU);
  }
}

void decideFloats(const Grid& grid, const Heights& heights, const ShapesByBit& shapes,
                  const Block<float>& block, Pending& pending) {
  decideAll(grid, heights, shapes, block, pending);
}

void decideDoubles(const Grid& grid, const Heights& heights, const ShapesByBit& shapes,
                   const Block<double>& block, Pending& pending) {
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
            Pending& pending) {
  HWY_DYNAMIC_DISPATCH(decideFloats)(grid, heights, shapes, block, pending);
}

void decide(const Grid& grid, const Heights& heights, const ShapesByBit& shapes, const Block<double>& block,
            Pending& pending) {
  HWY_DYNAMIC_DISPATCH(decideDoubles)(grid, heights, shapes, block, pending);
}

}  // namespace orvantis::filter::classify
#endif
