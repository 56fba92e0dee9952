#include "classify/Kernel.h"

#include <array>
#include <cmath>
#include <type_traits>

// Compiles this file once for each kind of processor that Highway knows.
#undef HWY_TARGET_INCLUDE
// Vectors of unknown length cannot be members of a class.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
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
    return grid.codes[static_cast<std::size_t>(cellX * grid.lattice.rows + cellY)];
  }

  std::size_t bucketOf(Real z) const {
    const auto rounded = static_cast<float>(z);
    return static_cast<std::size_t>(std::isnan(rounded) ? heights.lastBucket + 1 : heights.bucket(rounded));
  }

  static void append(PointList& list, std::size_t point, std::uint32_t code) {
    list.entries[list.size] = code << 16U | static_cast<std::uint32_t>(point);
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

HWY_INLINE Longs lowLongs(Ints values) {
  return hn::PromoteTo(longs, hn::LowerHalf(halfInts, values));
}
HWY_INLINE Longs highLongs(Ints values) {
  return hn::PromoteTo(longs, hn::UpperHalf(halfInts, values));
}

// The indices of the masks from the starts on: those of the masks below are twice the buckets.
HWY_INLINE Ints upperHalf(Ints bucket, Lanes isUpper) {
  return bucket + bucket - hn::VecFromMask(ints, hn::RebindMask(ints, isUpper));
}

// As many coordinates as there are floats in a vector.
struct FloatCoordinates {
  using Real = float;

  HWY_INLINE explicit FloatCoordinates(const float* from) : values(hn::LoadU(floats, from)) {}

  HWY_INLINE Floats minus(double origin) const {
    return values - hn::Set(floats, static_cast<float>(origin));
  }
  HWY_INLINE Floats asFloats() const { return values; }
  HWY_INLINE Lanes isFinite() const { return hn::IsFinite(values); }
  HWY_INLINE std::size_t numFinite(const FloatCoordinates& y, const FloatCoordinates& z) const {
    return hn::CountTrue(floats, hn::And(isFinite(), hn::And(y.isFinite(), z.isFinite())));
  }
  // For heights: which mask of its bucket each has.
  HWY_INLINE Ints half(Ints bucket, Floats starts, const double*) const {
    return upperHalf(bucket, values >= starts);
  }

  Floats values;
};

struct DoubleCoordinates {
  using Real = double;

  HWY_INLINE explicit DoubleCoordinates(const double* from)
      : low(hn::LoadU(doubles, from)), high(hn::LoadU(doubles, from + hn::Lanes(doubles))) {}

  HWY_INLINE Floats minus(double origin) const {
    const Doubles corner = hn::Set(doubles, origin);
    return rounded(low - corner, high - corner);
  }
  HWY_INLINE Floats asFloats() const { return rounded(low, high); }
  HWY_INLINE std::size_t numFinite(const DoubleCoordinates& y, const DoubleCoordinates& z) const {
    return hn::CountTrue(doubles,
                         hn::And(hn::IsFinite(low), hn::And(hn::IsFinite(y.low), hn::IsFinite(z.low)))) +
           hn::CountTrue(doubles,
                         hn::And(hn::IsFinite(high), hn::And(hn::IsFinite(y.high), hn::IsFinite(z.high))));
  }
  HWY_INLINE Ints half(Ints bucket, Floats, const double* starts) const {
    const auto isUpperLow = low >= hn::GatherIndex(doubles, starts, lowLongs(bucket));
    const auto isUpperHigh = high >= hn::GatherIndex(doubles, starts, highLongs(bucket));
    const Doubles one = hn::Set(doubles, 1.0);
    const Floats upper = rounded(hn::IfThenElseZero(isUpperLow, one), hn::IfThenElseZero(isUpperHigh, one));
    return upperHalf(bucket, upper > hn::Zero(floats));
  }

  HWY_INLINE static Floats rounded(Doubles low, Doubles high) {
    return hn::Combine(floats, hn::DemoteTo(halfFloats, high), hn::DemoteTo(halfFloats, low));
  }

  Doubles low;
  Doubles high;
};

// As many points at a time as a vector has lanes. Holds what the loop over a block needs by value: what it
// writes could otherwise change the tables, for all the compiler knows.
template <typename Coordinates>
class VectorLookup {
 public:
  using Real = typename Coordinates::Real;

  VectorLookup(const Grid& grid, const Heights& heights, std::uint64_t* out, Pending& pending)
      : firstColumn_(grid.lattice.x0 + 0.5 * grid.lattice.cell),
        firstRow_(grid.lattice.y0 + 0.5 * grid.lattice.cell),
        cellsPerMetre_(static_cast<float>(1.0 / grid.lattice.cell)),
        lastColumn_(static_cast<float>(grid.lattice.columns - 1)),
        lastRow_(static_cast<float>(grid.lattice.rows - 1)),
        farthest_(static_cast<float>(Lattice::farthest / grid.lattice.cell)),
        numRows_(grid.lattice.rows),
        codes_(reinterpret_cast<const std::int32_t*>(grid.codes.data())),
        palette_(grid.palette.data()),
        firstCut_(static_cast<std::int32_t>(grid.firstCut)),
        firstCrossed_(static_cast<std::int32_t>(grid.firstCrossed)),
        codeOfNaN_(static_cast<std::int32_t>(grid.codeOfNaN)),
        codeOfFarAway_(static_cast<std::int32_t>(grid.codeOfFarAway)),
        lowestHeight_(heights.origin),
        bucketsPerMetre_(heights.bucketsPerMetre),
        lastBucket_(static_cast<float>(heights.lastBucket)),
        bucketOfNaN_(heights.lastBucket + 1),
        starts_(heights.startsAsFloat.data()),
        exactStarts_(heights.starts.data()),
        heightMasks_(heights.masks.data()),
        out_(out),
        cut_(pending.cut.entries.data()),
        crossed_(pending.crossed.entries.data()),
        openHeights_(pending.heights.entries.data()) {}

  HWY_INLINE void operator()(const Real* xs, const Real* ys, const Real* zs, std::size_t first) {
    const Coordinates x(xs);
    const Coordinates y(ys);
    const Coordinates z(zs);
    // In cells, from the middle of the first one.
    const Floats column = x.minus(firstColumn_) * hn::Set(floats, cellsPerMetre_);
    const Floats row = y.minus(firstRow_) * hn::Set(floats, cellsPerMetre_);
    const Floats height = z.asFloats();
    const Floats scaledHeight = (height - hn::Set(floats, lowestHeight_)) * hn::Set(floats, bucketsPerMetre_);

    Ints codes = codesAt(column, row);
    Ints bucket = nearest(scaledHeight, lastBucket_);
    // One test for what is rare: not a number, infinite, or far away.
    const Floats extent = hn::Abs(column) + hn::Abs(row) + hn::Abs(scaledHeight);
    if (HWY_UNLIKELY(!hn::AllTrue(floats, extent <= hn::Set(floats, farthest_)))) {
      const Floats farthest = hn::Set(floats, farthest_);
      const Lanes isColumnNear = hn::Abs(column) <= farthest;
      const Lanes isRowNear = hn::Abs(row) <= farthest;
      codes = chosen(hn::AndNot(isRowNear, isColumnNear), codeOfFarAway_, codes);
      codes = chosen(hn::Or(hn::IsNaN(column), hn::IsNaN(row)), codeOfNaN_, codes);
      bucket = chosen(hn::IsNaN(height), bucketOfNaN_, bucket);
      notFinite_ += hn::Lanes(floats) - x.numFinite(y, z);
    }

    const Floats starts = hn::GatherIndex(floats, starts_, bucket);
    const Ints half = z.half(bucket, starts, exactStarts_);
    store(lowLongs(codes), lowLongs(half), out_ + first);
    store(highLongs(codes), highLongs(half), out_ + first + hn::Lanes(masks));

    const Ints points = hn::Set(ints, static_cast<std::int32_t>(first)) + hn::Iota(ints, 0);
    const auto isUndecided = codes > hn::Set(ints, firstCut_ - 1);
    const auto isCrossed = codes > hn::Set(ints, firstCrossed_ - 1);
    const auto isOpen = hn::RebindMask(ints, hn::IsNaN(starts));
    append(cut_, points, codes, hn::AndNot(isCrossed, isUndecided));
    if (!hn::AllFalse(ints, hn::Or(isCrossed, isOpen))) {
      append(crossed_, points, codes, isCrossed);
      append(openHeights_, points, codes, isOpen);
    }
  }

  // @return the number of points that are not finite
  std::size_t finish(Pending& pending) const {
    pending.cut.size = static_cast<std::size_t>(cut_ - pending.cut.entries.data());
    pending.crossed.size = static_cast<std::size_t>(crossed_ - pending.crossed.entries.data());
    pending.heights.size = static_cast<std::size_t>(openHeights_ - pending.heights.entries.data());
    return notFinite_;
  }

 private:
  // The whole number nearest to a position between 0 and `last`, with positions beyond taken for the ends.
  // Adding a number in whose binade floats are one apart leaves it in the low bits; a conversion costs more.
  // Max takes the number when one of its arguments is not one.
  HWY_INLINE static Ints nearest(Floats position, float last) {
    const Floats clamped = hn::Min(hn::Max(position, hn::Zero(floats)), hn::Set(floats, last));
    return hn::And(hn::BitCast(ints, clamped + hn::Set(floats, wholeNumbers)), hn::Set(ints, 0x3FFFFF));
  }

  // The codes of the cells; of a cell at the lattice's rim for points outside.
  HWY_INLINE Ints codesAt(Floats column, Floats row) const {
    const Ints cellX = nearest(column, lastColumn_);
    const Ints cellY = nearest(row, lastRow_);
    const Ints at = cellX * hn::Set(ints, numRows_) + cellY;
    return hn::And(hn::GatherOffset(ints, codes_, at + at), hn::Set(ints, 0xFFFF));
  }

  HWY_INLINE static Ints chosen(Lanes where, std::int32_t value, Ints otherwise) {
    return hn::IfThenElse(hn::RebindMask(ints, where), hn::Set(ints, value), otherwise);
  }

  HWY_INLINE void store(Longs codes, Longs half, std::uint64_t* to) const {
    const Masks here = hn::GatherIndex(masks, palette_, codes);
    const Masks atHeight = hn::GatherIndex(masks, heightMasks_, half);
    hn::StoreU(hn::And(here, atHeight), masks, to);
  }

  HWY_INLINE static void append(std::uint32_t*& list, Ints points, Ints codes,
                                hn::Mask<decltype(ints)> where) {
    const auto entries = hn::BitCast(words, hn::Or(hn::ShiftLeft<16>(codes), points));
    list += hn::CompressStore(entries, hn::RebindMask(words, where), words, list);
  }

  double firstColumn_;
  double firstRow_;
  float cellsPerMetre_;
  float lastColumn_;
  float lastRow_;
  float farthest_;
  std::int32_t numRows_;
  const std::int32_t* codes_;
  const std::uint64_t* palette_;
  std::int32_t firstCut_;
  std::int32_t firstCrossed_;
  std::int32_t codeOfNaN_;
  std::int32_t codeOfFarAway_;

  float lowestHeight_;
  float bucketsPerMetre_;
  float lastBucket_;
  std::int32_t bucketOfNaN_;
  const float* starts_;
  const double* exactStarts_;
  const std::uint64_t* heightMasks_;

  std::uint64_t* out_;
  std::uint32_t* cut_;
  std::uint32_t* crossed_;
  std::uint32_t* openHeights_;
  std::size_t notFinite_ = 0;
};

template <typename Real>
using Coordinates = std::conditional_t<std::is_same_v<Real, float>, FloatCoordinates, DoubleCoordinates>;

#endif

template <typename Real>
std::size_t lookUpBlock(const Grid& grid, const Heights& heights, const Real* x, const Real* y, const Real* z,
                        std::size_t size, std::uint64_t* out, Pending& pending) {
  std::size_t notFinite = 0;
  std::size_t first = 0;
#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128
  VectorLookup<Coordinates<Real>> lookUpVector(grid, heights, out, pending);
  const std::size_t lanes = hn::Lanes(floats);
  for (; first + lanes <= size; first += lanes) {
    lookUpVector(x + first, y + first, z + first, first);
  }
  notFinite += lookUpVector.finish(pending);
#endif
  const PointLookup<Real> lookUpPoint{grid, heights, out, pending};
  for (; first < size; ++first) {
    notFinite += lookUpPoint(x[first], y[first], z[first], first) ? 0 : 1;
  }
  return notFinite;
}

// Adds one number to counters that keep their bits in separate words: bit k of all in plane k.
void addToPlanes(BitCounts& counts, std::uint64_t bits) {
  for (std::size_t k = 0; bits != 0; ++k) {
    const std::uint64_t carry = counts.planes[k][0] & bits;
    counts.planes[k][0] ^= bits;
    bits = carry;
  }
}

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

// One step of adding in separate bits: `sum` and two vectors become `sum` and what is carried.
HWY_INLINE Masks carried(Masks& sum, Masks a, Masks b) {
  const Masks half = hn::Xor(sum, a);
  const Masks carry = hn::Or(hn::And(sum, a), hn::And(half, b));
  sum = hn::Xor(half, b);
  return carry;
}

// Field zones of the points that no exclusion zone holds, of two vectors of masks in one.
HWY_INLINE Masks countedZones(const std::uint64_t* from, std::size_t& numExcluded) {
  const std::size_t lanes = hn::Lanes(masks);
  const Masks low = hn::LoadU(masks, from);
  const Masks high = hn::LoadU(masks, from + lanes);
  const auto isLowFree = hn::Eq(hn::ShiftRight<BitCounts::numZones>(low), hn::Zero(masks));
  const auto isHighFree = hn::Eq(hn::ShiftRight<BitCounts::numZones>(high), hn::Zero(masks));
  numExcluded += 2 * lanes - hn::CountTrue(masks, isLowFree) - hn::CountTrue(masks, isHighFree);
  return hn::Or(hn::IfThenElseZero(isLowFree, low),
                hn::ShiftLeft<BitCounts::numZones>(hn::IfThenElseZero(isHighFree, high)));
}

// Counts whole groups of 16 pairs of vectors. @return how many masks that were
std::size_t countGroups(const std::uint64_t* from, std::size_t size, BitCounts& counts) {
  const std::size_t lanes = hn::Lanes(masks);
  const std::size_t group = 32 * lanes;
  std::size_t done = 0;
  for (; done + group <= size; done += group) {
    std::size_t numExcluded = 0;
    std::size_t at = done;
    const auto next = [&] {
      const Masks zones = countedZones(from + at, numExcluded);
      at += 2 * lanes;
      return zones;
    };
    std::array<Masks, 4> sums{hn::Load(masks, counts.planes[0]), hn::Load(masks, counts.planes[1]),
                              hn::Load(masks, counts.planes[2]), hn::Load(masks, counts.planes[3])};
    const auto nextTwos = [&] {
      const Masks a = next();
      return carried(sums[0], a, next());
    };
    const auto nextFours = [&] {
      const Masks a = nextTwos();
      return carried(sums[1], a, nextTwos());
    };
    const auto nextEights = [&] {
      const Masks a = nextFours();
      return carried(sums[2], a, nextFours());
    };
    const Masks firstEights = nextEights();
    Masks carry = carried(sums[3], firstEights, nextEights());
    for (std::size_t k = 0; k < sums.size(); ++k) {
      hn::Store(sums[k], masks, counts.planes[k]);
    }
    for (std::size_t k = sums.size(); !hn::AllTrue(masks, hn::Eq(carry, hn::Zero(masks))); ++k) {
      const Masks sum = hn::Load(masks, counts.planes[k]);
      hn::Store(hn::Xor(sum, carry), masks, counts.planes[k]);
      carry = hn::And(sum, carry);
    }
    counts.numExcluded += numExcluded;
  }
  return done;
}

#endif

void countMasks(const std::uint64_t* from, std::size_t size, BitCounts& counts) {
  std::size_t done = 0;
#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128
  done = countGroups(from, size, counts);
#endif
  for (; done < size; ++done) {
    const bool isExcluded = from[done] >> BitCounts::numZones != 0;
    counts.numExcluded += isExcluded ? 1 : 0;
    addToPlanes(counts, isExcluded ? 0 : from[done]);
  }
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
HWY_EXPORT(countMasks);

std::array<std::uint64_t, BitCounts::numZones> BitCounts::inside() const {
  std::array<std::uint64_t, numZones> counts{};
  for (std::size_t k = 0; k < numPlanes; ++k) {
    for (const std::uint64_t word : planes[k]) {
      if (word == 0) {
        continue;
      }
      for (std::size_t zone = 0; zone < numZones; ++zone) {
        counts[zone] += ((word >> zone & 1U) + (word >> (zone + numZones) & 1U)) << k;
      }
    }
  }
  return counts;
}

void countZones(const std::uint64_t* masks, std::size_t size, BitCounts& counts) {
  HWY_DYNAMIC_DISPATCH(countMasks)(masks, size, counts);
}

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
