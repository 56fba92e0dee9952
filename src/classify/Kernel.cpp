#include "classify/Kernel.h"

#include <cmath>
#include <limits>
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
    const std::int32_t block = (cellY / side << grid.blockRowShift) + cellX / side;
    const auto place = static_cast<std::uint32_t>(cellY % side * side + cellX % side);
    const std::uint32_t entry = grid.blocks[static_cast<std::size_t>(block)];
    return grid.codes[(entry >> 6U) + (place & entry)];
  }

  std::size_t bucketOf(Real z) const {
    const auto rounded = static_cast<float>(z);
    const float scaled = (rounded - heights.origin) * heights.bucketsPerMetre;
    return static_cast<std::size_t>(std::isnan(rounded) ? heights.lastBucket + 1
                                                        : cellOf(scaled, heights.lastBucket + 1));
  }

  static void append(PointList& list, std::size_t point, std::uint32_t code) {
    list.points[list.size] = static_cast<std::uint32_t>(point);
    list.codes[list.size] = code;
    ++list.size;
  }

  bool operator()(Real x, Real y, Real z, std::size_t point) const {
    const std::uint32_t code = codeOf(x, y);
    const std::size_t bucket = bucketOf(z);
    const double start = heights.starts[bucket];
    const std::size_t upper = static_cast<double>(z) >= start ? 1 : 0;
    out[point] = grid.palette[code] & heights.masks[2 * bucket + upper];
    if (code >= grid.firstCut) {
      append(code < grid.firstCrossed ? pending.cut : pending.crossed, point, code);
    }
    if (std::isnan(start)) {
      append(pending.heights, point, code);
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

// The whole number nearest to a position between 0 and `last`, with positions beyond taken for the ends.
// Adding a number in whose binade floats are one apart leaves it in the low bits; a conversion would cost
// more.
Ints nearest(Floats position, float last) {
  constexpr float shift = 0x1.8p23F;
  const Floats clamped = hn::Min(hn::Max(position, hn::Zero(floats)), hn::Set(floats, last));
  return hn::And(hn::BitCast(ints, clamped + hn::Set(floats, shift)), hn::Set(ints, 0x3FFFFF));
}

// Where points lie on the lattice, in cells and from the middle of the first cell.
struct Place {
  Floats column;
  Floats row;
};

template <typename Coordinates>
Place placeOf(const Lattice& lattice, const Coordinates& x, const Coordinates& y) {
  const Floats cellsPerMetre = hn::Set(floats, static_cast<float>(1.0 / lattice.cell));
  const double half = 0.5 * lattice.cell;
  return {x.minus(lattice.x0 + half) * cellsPerMetre, y.minus(lattice.y0 + half) * cellsPerMetre};
}

// The codes of the cells; of a cell at the lattice's rim for points outside.
Ints codesAt(const Grid& grid, const Place& place) {
  const Ints cellX = nearest(place.column, static_cast<float>(grid.lattice.columns - 1));
  const Ints cellY = nearest(place.row, static_cast<float>(grid.lattice.rows - 1));
  const Ints inBlock = hn::Set(ints, Lattice::blockSide - 1);
  const Ints block =
      hn::ShiftLeftSame(hn::ShiftRight<3>(cellY), grid.blockRowShift) + hn::ShiftRight<3>(cellX);
  const Ints cell = hn::OrAnd(hn::ShiftLeft<3>(hn::And(cellY, inBlock)), cellX, inBlock);

  const Ints entry = hn::GatherIndex(ints, reinterpret_cast<const std::int32_t*>(grid.blocks.data()), block);
  const Ints at = hn::ShiftRight<6>(entry) + hn::And(cell, entry);
  const Ints word = hn::GatherOffset(ints, reinterpret_cast<const std::int32_t*>(grid.codes.data()), at + at);
  return hn::And(word, hn::Set(ints, 0xFFFF));
}

// Buckets of the heights, which are given in buckets from the first one's start.
Ints bucketsAt(const Heights& heights, Floats scaled) {
  return hn::ConvertTo(ints, hn::Min(hn::Max(scaled, hn::Zero(floats)),
                                     hn::Set(floats, static_cast<float>(heights.lastBucket))));
}

// The zones at the heights, and the lanes of heights that this does not decide.
struct AtHeight {
  Pair zones;
  Lanes isOpen;
};

AtHeight zonesAtHeight(const Heights& heights, Ints bucket, const FloatCoordinates& z) {
  const Floats start = hn::GatherIndex(floats, heights.startsAsFloat.data(), bucket);
  const Ints isUpper = hn::VecFromMask(ints, hn::RebindMask(ints, z.values >= start));
  return {gather(heights.masks.data(), bucket + bucket - isUpper), hn::IsNaN(start)};
}

Masks zonesAtHeight(const Heights& heights, Longs bucket, Doubles z) {
  const Doubles start = hn::GatherIndex(doubles, heights.starts.data(), bucket);
  const Longs isUpper = hn::VecFromMask(longs, hn::RebindMask(longs, z >= start));
  return hn::GatherIndex(masks, heights.masks.data(), bucket + bucket - isUpper);
}

AtHeight zonesAtHeight(const Heights& heights, Ints bucket, const DoubleCoordinates& z) {
  const Floats start = hn::GatherIndex(floats, heights.startsAsFloat.data(), bucket);
  return {
      {zonesAtHeight(heights, lowLongs(bucket), z.low), zonesAtHeight(heights, highLongs(bucket), z.high)},
      hn::IsNaN(start)};
}

Ints chosen(Lanes where, std::uint32_t value, Ints otherwise) {
  return hn::IfThenElse(hn::RebindMask(ints, where), hn::Set(ints, static_cast<std::int32_t>(value)),
                        otherwise);
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
  const Place place = placeOf(grid.lattice, x, y);
  const Floats height = z.asFloats();
  const Floats scaledHeight =
      (height - hn::Set(floats, heights.origin)) * hn::Set(floats, heights.bucketsPerMetre);
  Ints codes = codesAt(grid, place);
  Ints bucket = bucketsAt(heights, scaledHeight);

  // One test for what is rare: not a number, infinite, or far away.
  std::size_t notFinite = 0;
  const Floats farthest = hn::Set(floats, static_cast<float>(Lattice::farthest / grid.lattice.cell));
  const Lanes isColumnNear = hn::Abs(place.column) <= farthest;
  const Lanes isRowNear = hn::Abs(place.row) <= farthest;
  const Lanes isHeightFinite = hn::Abs(height) <= hn::Set(floats, std::numeric_limits<float>::max());
  if (!hn::AllTrue(floats, hn::And(hn::And(isColumnNear, isRowNear), isHeightFinite))) {
    const Lanes isNaN = hn::Or(hn::IsNaN(place.column), hn::IsNaN(place.row));
    const Lanes isFarAway = hn::AndNot(isRowNear, isColumnNear);
    codes = chosen(isFarAway, grid.codeOfFarAway, codes);
    codes = chosen(isNaN, grid.codeOfNaN, codes);
    bucket = chosen(hn::IsNaN(height), static_cast<std::uint32_t>(heights.lastBucket) + 1, bucket);
    notFinite = numNotFinite(x, y, z);
  }

  const Pair here = gather(grid.palette.data(), codes);
  const AtHeight atHeight = zonesAtHeight(heights, bucket, z);
  hn::StoreU(hn::And(here.low, atHeight.zones.low), masks, out);
  hn::StoreU(hn::And(here.high, atHeight.zones.high), masks, out + hn::Lanes(masks));

  const auto isUndecided = codes > hn::Set(ints, static_cast<std::int32_t>(grid.firstCut) - 1);
  const auto isOpen = hn::RebindMask(ints, atHeight.isOpen);
  if (!hn::AllFalse(ints, hn::Or(isUndecided, isOpen))) {
    const Ints points = hn::Iota(ints, static_cast<std::int32_t>(first));
    const auto isCrossed = codes > hn::Set(ints, static_cast<std::int32_t>(grid.firstCrossed) - 1);
    append(pending.cut, points, codes, hn::AndNot(isCrossed, isUndecided));
    append(pending.crossed, points, codes, isCrossed);
    append(pending.heights, points, codes, isOpen);
  }
  return notFinite;
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
