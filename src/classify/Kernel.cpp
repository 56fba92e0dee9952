#include "classify/Kernel.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <type_traits>

#include <hwy/cache_control.h>

// Compiles this file once for each kind of processor that Highway knows.
#undef HWY_TARGET_INCLUDE
// Vectors of unknown length cannot be members of a class.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#define HWY_TARGET_INCLUDE "classify/Kernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

// What looking a point up takes from the tables, by value: what is written could otherwise change it, for all
// the compiler knows.
struct Tables {
  Tables(const Grid& grid, const Heights& heights)
      : firstColumn(grid.lattice.x0 + 0.5 * grid.lattice.cell),
        firstRow(grid.lattice.y0 + 0.5 * grid.lattice.cell),
        cellsPerMetre(static_cast<float>(1.0 / grid.lattice.cell)),
        lastColumn(static_cast<std::uint32_t>(grid.lattice.columns - 1)),
        lastRow(static_cast<std::uint32_t>(grid.lattice.rows - 1)),
        farthest(static_cast<float>(Lattice::farthest / grid.lattice.cell)),
        numRows(grid.lattice.rows),
        codes(grid.codes.data()),
        palette(grid.palette.data()),
        firstCut(static_cast<std::int32_t>(grid.firstCut)),
        firstCrossed(static_cast<std::int32_t>(grid.firstCrossed)),
        codeOfNaN(static_cast<std::int32_t>(grid.codeOfNaN)),
        codeOfFarAway(static_cast<std::int32_t>(grid.codeOfFarAway)),
        lowestInside(heights.lowestInside),
        highestInside(heights.highestInside),
        lowestHeight(heights.origin),
        bucketsPerMetre(heights.bucketsPerMetre),
        lastBucket(heights.lastBucket),
        bucketOfNaN(heights.lastBucket + 1),
        starts(heights.startsAsFloat.data()),
        exactStarts(heights.starts.data()),
        heightMasks(heights.masks.data()) {}

  double firstColumn;  // the middle of the first cell
  double firstRow;
  float cellsPerMetre;
  std::uint32_t lastColumn;
  std::uint32_t lastRow;
  float farthest;  // in cells
  std::int32_t numRows;
  const std::uint16_t* codes;
  const std::uint64_t* palette;
  std::int32_t firstCut;
  std::int32_t firstCrossed;
  std::int32_t codeOfNaN;
  std::int32_t codeOfFarAway;

  float lowestInside;
  float highestInside;
  float lowestHeight;
  float bucketsPerMetre;
  std::int32_t lastBucket;
  std::int32_t bucketOfNaN;
  const float* starts;
  const double* exactStarts;
  const std::uint64_t* heightMasks;
};

// Where the next entries of the lists go.
struct Ends {
  explicit Ends(Pending& pending)
      : cut(pending.cut.entries.data()),
        crossed(pending.crossed.entries.data()),
        heights(pending.heights.entries.data()) {}

  void finish(Pending& pending) const {
    pending.cut.size = static_cast<std::size_t>(cut - pending.cut.entries.data());
    pending.crossed.size = static_cast<std::size_t>(crossed - pending.crossed.entries.data());
    pending.heights.size = static_cast<std::size_t>(heights - pending.heights.entries.data());
  }

  std::uint32_t* cut;
  std::uint32_t* crossed;
  std::uint32_t* heights;
};

// A position is rounded to a whole number by adding `wholeNumbers`: the bits of the sum less these are that
// number. Up to 2^22 away from zero, the sum has the sign and the exponent of `wholeNumbers`. Beyond, it has
// others, and the difference may have any sign, but is far from zero.
//
// A cell's number is cut off at the last one as an unsigned number. So left of the first cell is taken for
// right of the last one, which is outside of all zones as well.
constexpr auto wholeBits = std::bit_cast<std::uint32_t>(wholeNumbers);
constexpr std::uint32_t signAndExponent = 0xFF800000;

// Asks for bytes that will be read soon. They may lie past the end of what is read.
HWY_INLINE void fetch(const void* from, std::size_t ahead, std::size_t size) {
  constexpr std::size_t lineSize = 64;
  const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(from) + ahead;
  for (std::size_t offset = 0; offset < size; offset += lineSize) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a pointer may not be moved past the end of its array
    hwy::Prefetch(reinterpret_cast<const unsigned char*>(first + offset));
  }
}

// One point at a time: for the last points of a block, and for processors without vectors. Without a branch
// that depends on where an ordinary point is.
template <typename Real>
class PointLookup {
 public:
  PointLookup(const Tables& tables, std::uint64_t* out) : t_(tables), out_(out) {}

  void operator()(Real x, Real y, Real z, std::size_t point, Ends& ends) {
    const float column = static_cast<float>(x - static_cast<Real>(t_.firstColumn)) * t_.cellsPerMetre;
    const float row = static_cast<float>(y - static_cast<Real>(t_.firstRow)) * t_.cellsPerMetre;
    const auto height = static_cast<float>(z);
    const float scaledHeight = (height - t_.lowestHeight) * t_.bucketsPerMetre;

    const std::uint32_t columnBits = roundedBits(column);
    const std::uint32_t rowBits = roundedBits(row);
    const std::uint32_t heightBits = roundedBits(scaledHeight);
    const std::size_t cellX = std::min(columnBits - wholeBits, t_.lastColumn);
    const std::size_t cellY = std::min(rowBits - wholeBits, t_.lastRow);
    std::int32_t code = t_.codes[cellX * static_cast<std::size_t>(t_.numRows) + cellY];
    std::int32_t bucket = std::clamp(static_cast<std::int32_t>(heightBits - wholeBits), 0, t_.lastBucket);
    const std::uint32_t differences =
        (columnBits ^ wholeBits) | (rowBits ^ wholeBits) | (heightBits ^ wholeBits);
    if (HWY_UNLIKELY((differences & signAndExponent) != 0)) {
      if (std::isnan(column) || std::isnan(row)) {
        code = t_.codeOfNaN;
      } else if (std::abs(column) <= t_.farthest && std::abs(row) > t_.farthest) {
        code = t_.codeOfFarAway;
      }
      bucket = std::isnan(height) ? t_.bucketOfNaN : scaledHeight < 0.0F ? 0 : bucket;
      notFinite_ += std::isfinite(x) && std::isfinite(y) && std::isfinite(z) ? 0 : 1;
    }

    const double start = t_.exactStarts[bucket];
    const std::int32_t half = 2 * bucket + (static_cast<double>(z) >= start ? 1 : 0);
    out_[point] = t_.palette[std::min(code, t_.firstCut)] & t_.heightMasks[half];

    const std::uint32_t entry = static_cast<std::uint32_t>(code) << 16U | static_cast<std::uint32_t>(point);
    // Written in any case, and kept by the next one's place: a jump would be guessed wrong too often.
    const int isUndecided = code >= t_.firstCut ? 1 : 0;
    const int isCrossed = code >= t_.firstCrossed ? 1 : 0;
    *ends.cut = entry;
    ends.cut += isUndecided - isCrossed;
    *ends.crossed = entry;
    ends.crossed += isCrossed;
    if (HWY_UNLIKELY(std::isnan(start))) {
      *ends.heights++ = entry;
    }
  }

  std::size_t numNotFinite() const { return notFinite_; }

 private:
  static std::uint32_t roundedBits(float position) {
    return std::bit_cast<std::uint32_t>(position + wholeNumbers);
  }

  Tables t_;
  std::uint64_t* out_;
  std::size_t notFinite_ = 0;
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
using Words = hn::Vec<decltype(words)>;
using Longs = hn::Vec<decltype(longs)>;
using Masks = hn::Vec<decltype(masks)>;
using Lanes = hn::Mask<decltype(floats)>;

#if !(HWY_TARGET <= HWY_AVX3 && HWY_ARCH_X86)
// By which lanes are chosen, as the bits of a number: these lanes in order, then any.
using CompressOrders = std::array<std::array<std::uint32_t, hn::MaxLanes(words)>, 1U << hn::MaxLanes(words)>;
constexpr CompressOrders makeCompressOrders() {
  CompressOrders orders{};
  for (std::uint32_t bits = 0; bits < orders.size(); ++bits) {
    std::size_t numChosen = 0;
    for (std::uint32_t lane = 0; lane < orders[bits].size(); ++lane) {
      if ((bits >> lane & 1U) != 0) {
        orders[bits][numChosen++] = lane;
      }
    }
  }
  return orders;
}
alignas(64) constexpr CompressOrders compressOrders = makeCompressOrders();
#endif

HWY_INLINE Longs lowLongs(Ints values) {
  return hn::PromoteTo(longs, hn::LowerHalf(halfInts, values));
}
HWY_INLINE Longs highLongs(Ints values) {
  return hn::PromoteTo(longs, hn::UpperHalf(halfInts, values));
}

// The entries of a table at the lower and at the upper half of the indices.
#if HWY_TARGET <= HWY_AVX3 && HWY_ARCH_X86
// Highway's own way needs indices as wide as the entries.
HWY_INLINE Masks atLow(const std::uint64_t* table, Ints indices) {
  return Masks{_mm512_i32gather_epi64(_mm512_castsi512_si256(indices.raw), table, 8)};
}
HWY_INLINE Masks atHigh(const std::uint64_t* table, Ints indices) {
  return Masks{_mm512_i32gather_epi64(_mm512_extracti64x4_epi64(indices.raw, 1), table, 8)};
}
#else
HWY_INLINE Masks atLow(const std::uint64_t* table, Ints indices) {
  return hn::GatherIndex(masks, table, lowLongs(indices));
}
HWY_INLINE Masks atHigh(const std::uint64_t* table, Ints indices) {
  return hn::GatherIndex(masks, table, highLongs(indices));
}
#endif

// The indices of the masks from the starts on: those of the masks below are twice the buckets.
HWY_INLINE Ints upperHalf(Ints bucket, Lanes isUpper) {
  return bucket + bucket - hn::VecFromMask(ints, hn::RebindMask(ints, isUpper));
}

// As many coordinates as there are floats in a vector.
struct FloatCoordinates {
  using Real = float;

  HWY_INLINE explicit FloatCoordinates(const float* from) : values(hn::LoadU(floats, from)) {}

  HWY_INLINE static Floats same(double value) { return hn::Set(floats, static_cast<float>(value)); }
  HWY_INLINE Floats minus(Floats origin) const { return values - origin; }
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

  HWY_INLINE static Doubles same(double value) { return hn::Set(doubles, value); }
  HWY_INLINE Floats minus(Doubles origin) const { return rounded(low - origin, high - origin); }
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

// Appends the chosen entries to a list. Up to a whole vector is written past its end.
HWY_INLINE void append(std::uint32_t*& list, hn::Vec<decltype(words)> entries,
                       hn::Mask<decltype(words)> where) {
#if HWY_TARGET <= HWY_AVX3 && HWY_ARCH_X86
  hn::StoreU(hn::Compress(entries, where), words, list);
  list += hn::CountTrue(words, where);
#else
  // Not Highway's own way, which g++ makes into a copy of the whole table on the stack for every vector.
  std::array<std::uint8_t, 8> bits;
  hn::StoreMaskBits(words, where, bits.data());
  const std::uint32_t* order = compressOrders[bits[0]].data();
  hn::StoreU(hn::TableLookupLanes(entries, hn::SetTableIndices(words, order)), words, list);
  list += std::popcount(bits[0]);
#endif
}

// As many points at a time as a vector has lanes.
template <typename Coordinates, bool fetchesAll>
class VectorLookup {
 public:
  using Real = typename Coordinates::Real;

  VectorLookup(const Tables& tables, std::uint64_t* out) : t_(tables), out_(out) {}

  HWY_INLINE void operator()(const Real* xs, const Real* ys, const Real* zs, std::size_t first, Ends& ends) {
    // The processor itself fetches them too late, between the reads from the tables.
    constexpr std::size_t ahead = 256;
    constexpr std::size_t size = hn::MaxLanes(floats) * sizeof(Real);
    fetch(zs, ahead, size);
    if constexpr (fetchesAll) {
      fetch(xs, ahead, size);
      fetch(ys, ahead, size);
    }
    const Coordinates x(xs);
    const Coordinates y(ys);
    const Coordinates z(zs);
    const Floats height = z.asFloats();
    const Lanes mayBeInside = hn::And(height >= lowestInside_, height <= highestInside_);
    if (hn::AllFalse(floats, mayBeInside)) {
      // Points below and above all zones come in long runs: the ground in a frame.
      hn::StoreU(hn::Zero(masks), masks, out_ + first);
      hn::StoreU(hn::Zero(masks), masks, out_ + first + hn::Lanes(masks));
      notFinite_ += hn::Lanes(floats) - x.numFinite(y, z);
      return;
    }
    // In cells, from the middle of the first one.
    const Floats column = x.minus(firstColumn_) * cellsPerMetre_;
    const Floats row = y.minus(firstRow_) * cellsPerMetre_;
    const Floats scaledHeight = (height - lowestHeight_) * bucketsPerMetre_;

    const Ints columnBits = roundedBits(column);
    const Ints rowBits = roundedBits(row);
    const Ints heightBits = roundedBits(scaledHeight);
    Ints codes = codesAt(upTo(columnBits - whole_, lastColumn_), upTo(rowBits - whole_, lastRow_));
    Ints bucket = hn::Min(hn::Max(heightBits - whole_, hn::Zero(ints)), lastBucket_);
    // One test for what is rare: not a number, infinite, or far away.
    const Ints differences =
        hn::Or(hn::Or(hn::Xor(columnBits, whole_), hn::Xor(rowBits, whole_)), hn::Xor(heightBits, whole_));
    if (HWY_UNLIKELY(!hn::AllTrue(ints, hn::And(differences, signAndExponent_) == hn::Zero(ints)))) {
      const Floats farthest = hn::Set(floats, t_.farthest);
      const Lanes isColumnNear = hn::Abs(column) <= farthest;
      const Lanes isRowNear = hn::Abs(row) <= farthest;
      codes = chosen(hn::AndNot(isRowNear, isColumnNear), t_.codeOfFarAway, codes);
      codes = chosen(hn::Or(hn::IsNaN(column), hn::IsNaN(row)), t_.codeOfNaN, codes);
      bucket = chosen(scaledHeight < hn::Zero(floats), 0, bucket);
      bucket = chosen(hn::IsNaN(height), t_.bucketOfNaN, bucket);
      notFinite_ += hn::Lanes(floats) - x.numFinite(y, z);
    }

    const Floats starts = hn::GatherIndex(floats, t_.starts, bucket);
    const Ints half = z.half(bucket, starts, t_.exactStarts);
    const Ints sets = hn::Min(codes, firstCut_);
    hn::StoreU(hn::And(atLow(t_.palette, sets), atLow(t_.heightMasks, half)), masks, out_ + first);
    hn::StoreU(hn::And(atHigh(t_.palette, sets), atHigh(t_.heightMasks, half)), masks,
               out_ + first + hn::Lanes(masks));

    const Ints points = hn::Set(ints, static_cast<std::int32_t>(first)) + iota_;
    const auto entries = hn::BitCast(words, hn::Or(hn::ShiftLeft<16>(codes), points));
    const auto isAtHeight = hn::RebindMask(ints, mayBeInside);
    const auto isUndecided = hn::RebindMask(words, hn::And(isAtHeight, codes > lastDecided_));
    const auto isCrossed = hn::RebindMask(words, hn::And(isAtHeight, codes > lastCut_));
    append(ends.cut, entries, hn::AndNot(isCrossed, isUndecided));
    append(ends.crossed, entries, isCrossed);
    const auto isOpen = hn::RebindMask(words, hn::IsNaN(starts));
    if (HWY_UNLIKELY(!hn::AllFalse(words, isOpen))) {
      append(ends.heights, entries, isOpen);
    }
  }

  std::size_t numNotFinite() const { return notFinite_; }

 private:
  using Origin = decltype(Coordinates::same(0.0));

  HWY_INLINE static Ints roundedBits(Floats position) {
    return hn::BitCast(ints, position + hn::Set(floats, wholeNumbers));
  }

  HWY_INLINE static Ints upTo(Ints number, Words last) {
    return hn::BitCast(ints, hn::Min(hn::BitCast(words, number), last));
  }

  HWY_INLINE Ints codesAt(Ints cellX, Ints cellY) const {
    const Ints at = cellX * numRows_ + cellY;
    const auto* codes = reinterpret_cast<const std::int32_t*>(t_.codes);
    return hn::And(hn::GatherOffset(ints, codes, at + at), hn::Set(ints, 0xFFFF));
  }

  HWY_INLINE static Ints chosen(Lanes where, std::int32_t value, Ints otherwise) {
    return hn::IfThenElse(hn::RebindMask(ints, where), hn::Set(ints, value), otherwise);
  }

  Tables t_;
  std::uint64_t* out_;
  std::size_t notFinite_ = 0;

  // Spread over vectors once: the compiler would do it again for every vector of points that is not left
  // early.
  Origin firstColumn_ = Coordinates::same(t_.firstColumn);
  Origin firstRow_ = Coordinates::same(t_.firstRow);
  Floats cellsPerMetre_ = hn::Set(floats, t_.cellsPerMetre);
  Floats lowestInside_ = hn::Set(floats, t_.lowestInside);
  Floats highestInside_ = hn::Set(floats, t_.highestInside);
  Floats lowestHeight_ = hn::Set(floats, t_.lowestHeight);
  Floats bucketsPerMetre_ = hn::Set(floats, t_.bucketsPerMetre);
  Words lastColumn_ = hn::Set(words, t_.lastColumn);
  Words lastRow_ = hn::Set(words, t_.lastRow);
  Ints numRows_ = hn::Set(ints, t_.numRows);
  Ints lastBucket_ = hn::Set(ints, t_.lastBucket);
  Ints firstCut_ = hn::Set(ints, t_.firstCut);
  Ints lastDecided_ = hn::Set(ints, t_.firstCut - 1);
  Ints lastCut_ = hn::Set(ints, t_.firstCrossed - 1);
  Ints whole_ = hn::Set(ints, std::int32_t{wholeBits});
  Ints signAndExponent_ = hn::Set(ints, static_cast<std::int32_t>(signAndExponent));
  Ints iota_ = hn::Iota(ints, 0);
};

template <typename Real>
using Coordinates = std::conditional_t<std::is_same_v<Real, float>, FloatCoordinates, DoubleCoordinates>;

#endif

// How far before their copying records are fetched, in bytes.
constexpr std::size_t recordsAhead = 1024;

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

// Records of three or four numbers that stand without gaps. @return how many of them, but never the last: its
// fourth number may be no one's to read
template <typename Real>
std::size_t copyRecords(const Real* records, std::size_t numbers, std::size_t size, Real* x, Real* y,
                        Real* z) {
  constexpr hn::ScalableTag<Real> reals;
  const std::size_t lanes = hn::Lanes(reals);
  std::size_t done = 0;
  for (; size - done > lanes; done += lanes) {
    fetch(records + numbers * done, recordsAhead, numbers * lanes * sizeof(Real));
    hn::Vec<decltype(reals)> xs, ys, zs, rest;
    if (numbers == 3) {
      hn::LoadInterleaved3(reals, records + 3 * done, xs, ys, zs);
    } else {
      hn::LoadInterleaved4(reals, records + 4 * done, xs, ys, zs, rest);
    }
    hn::StoreU(xs, reals, x + done);
    hn::StoreU(ys, reals, y + done);
    hn::StoreU(zs, reals, z + done);
  }
  return done;
}

#endif

template <typename Real>
void copyAll(const PointsView<Real>& points, Real* x, Real* y, Real* z) {
  const auto* xs = static_cast<const unsigned char*>(points.x);
  const auto* ys = static_cast<const unsigned char*>(points.y);
  const auto* zs = static_cast<const unsigned char*>(points.z);
  std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128
  const std::size_t numbers = points.stride / sizeof(Real);
  const bool areTogether = ys == xs + sizeof(Real) && zs == ys + sizeof(Real);
  const bool isAligned = reinterpret_cast<std::uintptr_t>(xs) % alignof(Real) == 0;
  if (areTogether && isAligned && points.stride % sizeof(Real) == 0 && (numbers == 3 || numbers == 4)) {
    i = copyRecords(reinterpret_cast<const Real*>(xs), numbers, points.size, x, y, z);
  }
#endif
  for (; i < points.size; ++i) {
    fetch(xs + i * points.stride, recordsAhead, sizeof(Real));
    std::memcpy(x + i, xs + i * points.stride, sizeof(Real));
    std::memcpy(y + i, ys + i * points.stride, sizeof(Real));
    std::memcpy(z + i, zs + i * points.stride, sizeof(Real));
  }
}

void copyFloats(const PointsView<float>& points, float* x, float* y, float* z) {
  copyAll(points, x, y, z);
}

void copyDoubles(const PointsView<double>& points, double* x, double* y, double* z) {
  copyAll(points, x, y, z);
}

template <bool fetchesAll, typename Real>
std::size_t lookUpBlock(
    const Grid& grid, const Heights& heights, const Real* x, const Real* y, const Real* z, std::size_t size,
    std::uint64_t* out,  // NOLINT(readability-non-const-parameter): written by the lookups
    Pending& pending) {
  const Tables tables(grid, heights);
  Ends ends(pending);
  std::size_t notFinite = 0;
  std::size_t first = 0;
#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128
  VectorLookup<Coordinates<Real>, fetchesAll> lookUpVector(tables, out);
  const std::size_t lanes = hn::Lanes(floats);
  for (; first + lanes <= size; first += lanes) {
    lookUpVector(x + first, y + first, z + first, first, ends);
  }
  notFinite += lookUpVector.numNotFinite();
#endif
  PointLookup<Real> lookUpPoint(tables, out);
  for (; first < size; ++first) {
    lookUpPoint(x[first], y[first], z[first], first, ends);
  }
  notFinite += lookUpPoint.numNotFinite();
  ends.finish(pending);
  return notFinite;
}

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

// One step of adding in separate bits: `sum` and two vectors become `sum` and what is carried. With AVX-512
// two instructions, of which the compiler does not find the one that carries.
HWY_INLINE Words carried(Words& sum, Words a, Words b) {
#if HWY_TARGET <= HWY_AVX3 && HWY_ARCH_X86
  const Words carry{_mm512_ternarylogic_epi32(sum.raw, a.raw, b.raw, 0xE8)};
#else
  const Words carry = hn::Xor(a, hn::And(hn::Xor(sum, a), hn::Xor(a, b)));
#endif
  sum = hn::Xor3(sum, a, b);
  return carry;
}

// What each of two vectors of masks counts for, in any order: its field zones or, where an exclusion zone
// holds the point, the excluded.
HWY_INLINE Words countedBits(const std::uint64_t* from) {
  const Masks excluded = hn::Set(masks, BitCounts::excludedBit);
  const Masks first = hn::Min(hn::LoadU(masks, from), excluded);
  const Masks second = hn::Min(hn::LoadU(masks, from + hn::Lanes(masks)), excluded);
  return hn::ConcatEven(words, hn::BitCast(words, second), hn::BitCast(words, first));
}

// Adds up 64 vectors of masks a time. @return how many masks that were
std::size_t countGroups(const std::uint64_t* from, std::size_t size, BitCounts& counts) {
  const std::size_t group = 64 * hn::Lanes(words);
  std::size_t done = 0;
  for (; done + group <= size; done += group) {
    const std::uint64_t* at = from + done;
    std::array<Words, 6> sums;
    for (std::size_t k = 0; k < sums.size(); ++k) {
      sums[k] = hn::Load(words, counts.planes[k].data());
    }
    const auto next = [&] {
      const Words bits = countedBits(at);
      at += hn::Lanes(words);
      return bits;
    };
    const auto nextTwos = [&] {
      const Words a = next();
      return carried(sums[0], a, next());
    };
    const auto nextFours = [&] {
      const Words a = nextTwos();
      return carried(sums[1], a, nextTwos());
    };
    const auto nextEights = [&] {
      const Words a = nextFours();
      return carried(sums[2], a, nextFours());
    };
    std::array<Words, 4> sixteens;
    for (Words& carry : sixteens) {
      const Words a = nextEights();
      carry = carried(sums[3], a, nextEights());
    }
    const Words a = carried(sums[4], sixteens[0], sixteens[1]);
    Words carry = carried(sums[5], a, carried(sums[4], sixteens[2], sixteens[3]));
    for (std::size_t k = 0; k < sums.size(); ++k) {
      hn::Store(sums[k], words, counts.planes[k].data());
    }
    // How far it carries cannot be predicted: it goes through the next planes in any case.
    for (std::size_t k = sums.size(); k < 2 * sums.size() || !hn::AllTrue(words, carry == hn::Zero(words));
         ++k) {
      const Words sum = hn::Load(words, counts.planes[k].data());
      hn::Store(hn::Xor(sum, carry), words, counts.planes[k].data());
      carry = hn::And(sum, carry);
    }
  }
  return done;
}

#endif

void countMasks(const std::uint64_t* from, std::size_t size, BitCounts& counts) {
#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128
  const std::size_t done = countGroups(from, size, counts);
  if (done < size) {
    // Padded with masks that count nothing.
    alignas(64) std::array<std::uint64_t, 64 * hn::MaxLanes(words)> rest{};
    std::copy(from + done, from + size, rest.begin());
    countGroups(rest.data(), rest.size(), counts);
  }
#else
  for (std::size_t i = 0; i < size; ++i) {
    // Adds one number to counters that keep their bits in separate words: bit k of all in plane k.
    std::uint32_t carry =
        from[i] < BitCounts::excludedBit ? static_cast<std::uint32_t>(from[i]) : BitCounts::excludedBit;
    for (std::size_t k = 0; carry != 0; ++k) {
      const std::uint32_t sum = counts.planes[k][0];
      counts.planes[k][0] = sum ^ carry;
      carry = sum & carry;
    }
  }
#endif
}

std::size_t lookUpFloats(const Grid& grid, const Heights& heights, const float* x, const float* y,
                         const float* z, std::size_t size, std::uint64_t* out, Pending& pending,
                         bool fetchesAll) {
  return fetchesAll ? lookUpBlock<true>(grid, heights, x, y, z, size, out, pending)
                    : lookUpBlock<false>(grid, heights, x, y, z, size, out, pending);
}

std::size_t lookUpDoubles(const Grid& grid, const Heights& heights, const double* x, const double* y,
                          const double* z, std::size_t size, std::uint64_t* out, Pending& pending,
                          bool fetchesAll) {
  return fetchesAll ? lookUpBlock<true>(grid, heights, x, y, z, size, out, pending)
                    : lookUpBlock<false>(grid, heights, x, y, z, size, out, pending);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvantis::filter::classify {

HWY_EXPORT(copyFloats);
HWY_EXPORT(copyDoubles);
HWY_EXPORT(lookUpFloats);
HWY_EXPORT(lookUpDoubles);
HWY_EXPORT(countMasks);

std::array<std::uint64_t, BitCounts::numCounts> BitCounts::sums() const {
  constexpr std::size_t byteSize = 8;
  constexpr std::uint32_t lowestOfEachByte = 0x01010101;
  std::array<std::uint64_t, numCounts> sums{};
  for (std::size_t k = 0; k < numPlanes; ++k) {
    if (std::ranges::all_of(planes[k], [](std::uint32_t word) { return word == 0; })) {
      continue;
    }
    // In how many words each bit is set: that of bit i in byte i / 8 of number i % 8.
    std::array<std::uint32_t, byteSize> numSet{};
    for (const std::uint32_t word : planes[k]) {
      for (std::size_t shift = 0; shift < byteSize; ++shift) {
        numSet[shift] += word >> shift & lowestOfEachByte;
      }
    }
    for (std::size_t i = 0; i < numCounts; ++i) {
      sums[i] += std::uint64_t{numSet[i % byteSize] >> (i / byteSize * byteSize) & 0xFFU} << k;
    }
  }
  return sums;
}

void countZones(const std::uint64_t* masks, std::size_t size, BitCounts& counts) {
  HWY_DYNAMIC_DISPATCH(countMasks)(masks, size, counts);
}

void copyColumns(const PointsView<float>& points, float* x, float* y, float* z) {
  HWY_DYNAMIC_DISPATCH(copyFloats)(points, x, y, z);
}

void copyColumns(const PointsView<double>& points, double* x, double* y, double* z) {
  HWY_DYNAMIC_DISPATCH(copyDoubles)(points, x, y, z);
}

std::size_t lookUp(const Grid& grid, const Heights& heights, const float* x, const float* y, const float* z,
                   std::size_t size, std::uint64_t* masks, Pending& pending, bool fetchesAll) {
  return HWY_DYNAMIC_DISPATCH(lookUpFloats)(grid, heights, x, y, z, size, masks, pending, fetchesAll);
}

std::size_t lookUp(const Grid& grid, const Heights& heights, const double* x, const double* y,
                   const double* z, std::size_t size, std::uint64_t* masks, Pending& pending,
                   bool fetchesAll) {
  return HWY_DYNAMIC_DISPATCH(lookUpDoubles)(grid, heights, x, y, z, size, masks, pending, fetchesAll);
}

}  // namespace orvantis::filter::classify
#endif
