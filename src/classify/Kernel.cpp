#include "classify/Kernel.h"

#include <cmath>
#include <type_traits>

// Compiles this file once for each kind of processor that Highway knows.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "classify/Kernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

// One point at a time: for the last points of a block, and for processors without vectors.
template <typename Real>
struct PointLookup {
  const Grid& grid;
  const Heights& heights;
  std::uint64_t* out;
  Pending& pending;

  // The cell along one axis. Written so that a NaN, which has a code of its own, gives a cell too.
  static std::int32_t cellOf(float position, std::int32_t numCells) {
    const float last = static_cast<float>(numCells - 1);
    return position > 0.0F ? static_cast<std::int32_t>(position < last ? position : last) : 0;
  }

  std::uint32_t codeOf(Real x, Real y) const {
    const auto cellsPerMetre = static_cast<float>(1.0 / grid.lattice.cell);
    const float column = static_cast<float>(x - static_cast<Real>(grid.lattice.x0)) * cellsPerMetre;
    const float row = static_cast<float>(y - static_cast<Real>(grid.lattice.y0)) * cellsPerMetre;
    if (std::isnan(column) || std::isnan(row)) {
      return grid.codeOfNaN;
    }
    const auto farthest = static_cast<float>(Lattice::farthest / grid.lattice.cell);
    if (std::abs(row) > farthest && std::abs(column) <= farthest) {
      return grid.codeOfFarAway;
    }
    const std::int32_t cellX = cellOf(column, grid.lattice.columns);
    const std::int32_t cellY = cellOf(row, grid.lattice.rows);
    constexpr std::int32_t side = Lattice::blockSide;
    const std::int32_t block = cellY / side * grid.blocksPerRow + cellX / side;
    const auto place = static_cast<std::uint32_t>(cellY % side * side + cellX % side);
    const std::uint32_t entry = grid.blocks[static_cast<std::size_t>(block)];
    return grid.codes[(entry >> 6U) + (place & entry)];
  }

  std::uint64_t zonesAtHeight(Real z) const {
    const auto rounded = static_cast<float>(z);
    const float scaled = (rounded - heights.origin) * heights.bucketsPerMetre;
    const std::int32_t bucket =
        std::isnan(rounded) ? heights.lastBucket + 1 : cellOf(scaled, heights.lastBucket + 1);
    std::int32_t slab = heights.startsBelow[static_cast<std::size_t>(bucket)];
    const double* starts = heights.starts.data() + slab;
    for (std::int32_t k = 0; k < heights.startsPerBucket; ++k) {
      slab += static_cast<double>(z) >= starts[k] ? 1 : 0;
    }
    return heights.masks[static_cast<std::size_t>(slab)];
  }

  bool operator()(Real x, Real y, Real z, std::size_t point) const {
    const std::uint32_t code = codeOf(x, y);
    out[point] = grid.palette[code] & zonesAtHeight(z);
    if (code >= grid.firstCut) {
      PointList& list = code < grid.firstCrossed ? pending.cut : pending.crossed;
      list.points[list.size] = static_cast<std::uint32_t>(point);
      list.codes[list.size] = code;
      ++list.size;
    }
    return std::isfinite(x) && std::isfinite(y) && std::isfinite(z);
  }
};

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

// A vector of floats and what fits into the same space or has as many lanes.
constexpr hn::ScalableTag<float> floats;
constexpr hn::RebindToSigned<decltype(floats)> ints;
constexpr hn::RebindToUnsigned<decltype(floats)> words;
constexpr hn::ScalableTag<double> doubles;
constexpr hn::RebindToSigned<decltype(doubles)> longs;
constexpr hn::RebindToUnsigned<decltype(doubles)> masks;
constexpr hn::Half<decltype(floats)> halfFloats;
constexpr hn::Half<decltype(ints)> halfInts;

using Floats = hn::Vec<decltype(floats)>;
using Ints = hn::Vec<decltype(ints)>;
using Doubles = hn::Vec<decltype(doubles)>;
using Longs = hn::Vec<decltype(longs)>;
using Masks = hn::Vec<decltype(masks)>;
using Lanes = hn::Mask<decltype(floats)>;

// As many coordinates as there are floats in a vector.
struct FloatCoordinates {
  using Real = float;

  explicit FloatCoordinates(const float* from) : values(hn::LoadU(floats, from)) {}

  Floats minus(double origin) const { return values - hn::Set(floats, static_cast<float>(origin)); }
  Floats asFloats() const { return values; }

  Floats values;
};

struct DoubleCoordinates {
  using Real = double;

  explicit DoubleCoordinates(const double* from)
      : low(hn::LoadU(doubles, from)), high(hn::LoadU(doubles, from + hn::Lanes(doubles))) {}

  Floats minus(double origin) const {
    const Doubles corner = hn::Set(doubles, origin);
    return rounded(low - corner, high - corner);
  }
  Floats asFloats() const { return rounded(low, high); }

  static Floats rounded(Doubles low, Doubles high) {
    return hn::Combine(floats, hn::DemoteTo(halfFloats, high), hn::DemoteTo(halfFloats, low));
  }

  Doubles low;
  Doubles high;
};

std::size_t numNotFinite(const FloatCoordinates& x, const FloatCoordinates& y, const FloatCoordinates& z) {
  const auto isFinite =
      hn::And(hn::IsFinite(x.values), hn::And(hn::IsFinite(y.values), hn::IsFinite(z.values)));
  return hn::Lanes(floats) - hn::CountTrue(floats, isFinite);
}

std::size_t numNotFinite(Doubles x, Doubles y, Doubles z) {
  const auto isFinite = hn::And(hn::IsFinite(x), hn::And(hn::IsFinite(y), hn::IsFinite(z)));
  return hn::Lanes(doubles) - hn::CountTrue(doubles, isFinite);
}

std::size_t numNotFinite(const DoubleCoordinates& x, const DoubleCoordinates& y, const DoubleCoordinates& z) {
  return numNotFinite(x.low, y.low, z.low) + numNotFinite(x.high, y.high, z.high);
}

Longs lowLongs(Ints values) {
  return hn::PromoteTo(longs, hn::LowerHalf(halfInts, values));
}
Longs highLongs(Ints values) {
  return hn::PromoteTo(longs, hn::UpperHalf(halfInts, values));
}

// A pair of vectors with one 64-bit value for each point.
struct Pair {
  Masks low;
  Masks high;
};

Pair gather(const std::uint64_t* table, Ints index) {
  return {hn::GatherIndex(masks, table, lowLongs(index)), hn::GatherIndex(masks, table, highLongs(index))};
}

// Cells along one axis. A value that is not a number lies in the first.
Ints cellOf(Floats position, Lanes isNaN, std::int32_t numCells) {
  const Floats last = hn::Set(floats, static_cast<float>(numCells - 1));
  const Floats clamped = hn::Min(hn::Max(hn::IfThenZeroElse(isNaN, position), hn::Zero(floats)), last);
  return hn::ConvertTo(ints, clamped);
}

template <typename Coordinates>
Ints codesOf(const Grid& grid, const Coordinates& x, const Coordinates& y) {
  const Floats cellsPerMetre = hn::Set(floats, static_cast<float>(1.0 / grid.lattice.cell));
  const Floats column = x.minus(grid.lattice.x0) * cellsPerMetre;
  const Floats row = y.minus(grid.lattice.y0) * cellsPerMetre;
  const Lanes isNaN = hn::Or(hn::IsNaN(column), hn::IsNaN(row));
  const Floats farthest = hn::Set(floats, static_cast<float>(Lattice::farthest / grid.lattice.cell));
  const Lanes isFar = hn::And(hn::Abs(row) > farthest, hn::Abs(column) <= farthest);

  const Ints cellX = cellOf(column, isNaN, grid.lattice.columns);
  const Ints cellY = cellOf(row, isNaN, grid.lattice.rows);
  const Ints inBlock = hn::Set(ints, Lattice::blockSide - 1);
  const Ints block = hn::ShiftRight<3>(cellY) * hn::Set(ints, grid.blocksPerRow) + hn::ShiftRight<3>(cellX);
  const Ints place = hn::Or(hn::ShiftLeft<3>(hn::And(cellY, inBlock)), hn::And(cellX, inBlock));

  const Ints entry = hn::GatherIndex(ints, reinterpret_cast<const std::int32_t*>(grid.blocks.data()), block);
  const Ints at = hn::ShiftRight<6>(entry) + hn::And(place, entry);
  const Ints word = hn::GatherOffset(ints, reinterpret_cast<const std::int32_t*>(grid.codes.data()), at + at);
  const Ints code = hn::And(word, hn::Set(ints, 0xFFFF));

  const Ints ofNaN = hn::Set(ints, static_cast<std::int32_t>(grid.codeOfNaN));
  const Ints ofFarAway = hn::Set(ints, static_cast<std::int32_t>(grid.codeOfFarAway));
  return hn::IfThenElse(hn::RebindMask(ints, isNaN), ofNaN,
                        hn::IfThenElse(hn::RebindMask(ints, isFar), ofFarAway, code));
}

Ints bucketsOf(const Heights& heights, Floats z) {
  const Floats scaled = (z - hn::Set(floats, heights.origin)) * hn::Set(floats, heights.bucketsPerMetre);
  const Lanes isNaN = hn::IsNaN(z);
  const Ints ofNaN = hn::Set(ints, heights.lastBucket + 1);
  return hn::IfThenElse(hn::RebindMask(ints, isNaN), ofNaN, cellOf(scaled, isNaN, heights.lastBucket + 1));
}

Pair zonesAtHeight(const Heights& heights, const FloatCoordinates& z) {
  const Ints first = hn::GatherIndex(ints, heights.startsBelow.data(), bucketsOf(heights, z.values));
  Ints slab = first;
  for (std::int32_t k = 0; k < heights.startsPerBucket; ++k) {
    const Floats start = hn::GatherIndex(floats, heights.startsAsFloat.data() + k, first);
    slab = slab - hn::VecFromMask(ints, hn::RebindMask(ints, z.values >= start));
  }
  return gather(heights.masks.data(), slab);
}

Masks zonesAtHeight(const Heights& heights, Doubles z, Longs first) {
  Longs slab = first;
  for (std::int32_t k = 0; k < heights.startsPerBucket; ++k) {
    const Doubles start = hn::GatherIndex(doubles, heights.starts.data() + k, first);
    slab = slab - hn::VecFromMask(longs, hn::RebindMask(longs, z >= start));
  }
  return hn::GatherIndex(masks, heights.masks.data(), slab);
}

Pair zonesAtHeight(const Heights& heights, const DoubleCoordinates& z) {
  const Ints first = hn::GatherIndex(ints, heights.startsBelow.data(), bucketsOf(heights, z.asFloats()));
  return {zonesAtHeight(heights, z.low, lowLongs(first)), zonesAtHeight(heights, z.high, highLongs(first))};
}

void append(PointList& list, Ints points, Ints codes, hn::Mask<decltype(ints)> chosen) {
  const auto which = hn::RebindMask(words, chosen);
  hn::CompressStore(hn::BitCast(words, codes), which, words, list.codes.data() + list.size);
  list.size += static_cast<std::uint32_t>(
      hn::CompressStore(hn::BitCast(words, points), which, words, list.points.data() + list.size));
}

// As many points as a vector has lanes.
template <typename Coordinates>
std::size_t lookUpVector(const Grid& grid, const Heights& heights, const typename Coordinates::Real* xs,
                         const typename Coordinates::Real* ys, const typename Coordinates::Real* zs,
                         std::size_t first, std::uint64_t* out, Pending& pending) {
  const Coordinates x(xs);
  const Coordinates y(ys);
  const Coordinates z(zs);
  const Ints codes = codesOf(grid, x, y);
  const Pair here = gather(grid.palette.data(), codes);
  const Pair atHeight = zonesAtHeight(heights, z);
  hn::StoreU(hn::And(here.low, atHeight.low), masks, out);
  hn::StoreU(hn::And(here.high, atHeight.high), masks, out + hn::Lanes(masks));

  const auto isUndecided = codes > hn::Set(ints, static_cast<std::int32_t>(grid.firstCut) - 1);
  if (!hn::AllFalse(ints, isUndecided)) {
    const Ints points = hn::Iota(ints, static_cast<std::int32_t>(first));
    const auto isCrossed = codes > hn::Set(ints, static_cast<std::int32_t>(grid.firstCrossed) - 1);
    append(pending.cut, points, codes, hn::AndNot(isCrossed, isUndecided));
    append(pending.crossed, points, codes, isCrossed);
  }
  return numNotFinite(x, y, z);
}

template <typename Real>
using Coordinates = std::conditional_t<std::is_same_v<Real, float>, FloatCoordinates, DoubleCoordinates>;

#endif

template <typename Real>
std::size_t lookUpBlock(const Grid& grid, const Heights& heights, const Real* x, const Real* y, const Real* z,
                        std::size_t size, std::uint64_t* out, Pending& pending) {
  std::size_t notFinite = 0;
  std::size_t first = 0;
#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128
  const std::size_t lanes = hn::Lanes(floats);
  for (; first + lanes <= size; first += lanes) {
    notFinite += lookUpVector<Coordinates<Real>>(grid, heights, x + first, y + first, z + first, first,
                                                 out + first, pending);
  }
#endif
  const PointLookup<Real> lookUpPoint{grid, heights, out, pending};
  for (; first < size; ++first) {
    notFinite += lookUpPoint(x[first], y[first], z[first], first) ? 0 : 1;
  }
  return notFinite;
}

std::size_t lookUpFloats(const Grid& grid, const Heights& heights, const float* x, const float* y,
                         const float* z, std::size_t size, std::uint64_t* out, Pending& pending) {
  return lookUpBlock(grid, heights, x, y, z, size, out, pending);
}

std::size_t lookUpDoubles(const Grid& grid, const Heights& heights, const double* x, const double* y,
                          const double* z, std::size_t size, std::uint64_t* out, Pending& pending) {
  return lookUpBlock(grid, heights, x, y, z, size, out, pending);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvantis::filter::classify {

HWY_EXPORT(lookUpFloats);
HWY_EXPORT(lookUpDoubles);

std::size_t lookUp(const Grid& grid, const Heights& heights, const float* x, const float* y, const float* z,
                   std::size_t size, std::uint64_t* masks, Pending& pending) {
  return HWY_DYNAMIC_DISPATCH(lookUpFloats)(grid, heights, x, y, z, size, masks, pending);
}

std::size_t lookUp(const Grid& grid, const Heights& heights, const double* x, const double* y,
                   const double* z, std::size_t size, std::uint64_t* masks, Pending& pending) {
  return HWY_DYNAMIC_DISPATCH(lookUpDoubles)(grid, heights, x, y, z, size, masks, pending);
}

}  // namespace orvantis::filter::classify
#endif
