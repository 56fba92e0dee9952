// Read once for each kind of processor: the guard toggles.
#if defined(ORVANTIS_CLASSIFY_VECTOR_LOOKUP) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVANTIS_CLASSIFY_VECTOR_LOOKUP
#undef ORVANTIS_CLASSIFY_VECTOR_LOOKUP
#else
#define ORVANTIS_CLASSIFY_VECTOR_LOOKUP
#endif

#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "classify/Coordinates-inl.h"
#include "classify/Fetch.h"
#include "classify/Lookup.h"
#include "classify/LookupTables.h"
#include "classify/Vectors-inl.h"

#if ORVANTIS_HAS_VECTORS
HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

// As many points at a time as a vector has lanes.
template <typename Coordinates, Fetching fetching>
class VectorLookup {
 public:
  using Real = typename Coordinates::Real;

  VectorLookup(const LookupTables& tables, std::uint64_t* out) : t_(tables), out_(out) {}

  HWY_INLINE void operator()(const Real* xs, const Real* ys, const Real* zs, std::size_t first, Ends& ends) {
    // The processor itself fetches them too late, between the reads from the tables.
    constexpr std::size_t ahead = 256;
    constexpr std::size_t size = hn::MaxLanes(floats) * sizeof(Real);
    fetch(zs, ahead, size);
    if constexpr (fetching == Fetching::All) {
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
      noReturns_ += hn::Lanes(floats) - x.numFinite(y, z);
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
      noReturns_ += hn::Lanes(floats) - x.numFinite(y, z);
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

  std::size_t numNoReturns() const { return noReturns_; }

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

  LookupTables t_;
  std::uint64_t* out_;
  std::size_t noReturns_ = 0;

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

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();
#endif

#endif
