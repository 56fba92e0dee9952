// Finds where points lie in the tables, as many at a time as a vector has floats. Read once for each kind of
// processor: the guard toggles.
#if defined(ORVANTIS_CLASSIFY_PLACING) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVANTIS_CLASSIFY_PLACING
#undef ORVANTIS_CLASSIFY_PLACING
#else
#define ORVANTIS_CLASSIFY_PLACING
#endif

#include <array>
#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "classify/Block.h"
#include "classify/Lookup.h"
#include "classify/LookupTables.h"
#include "classify/Pending.h"
#include "classify/Places.h"
#include "classify/Readers-inl.h"
#include "classify/Vectors-inl.h"

#if ORVANTIS_HAS_VECTORS
HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

// Like Folding::position. For heights it must give the same numbers, bit for bit.
class FoldedVectors {
 public:
  explicit FoldedVectors(const Folding& folding)
      : folding_(folding),
        stepsPerUnit_(hn::Set(floats, folding.stepsPerUnit)),
        count_(hn::Set(floats, folding.counts[0])) {}

  HWY_INLINE Floats steps(Floats distance) const { return distance * stepsPerUnit_; }

  // The whole number nearest to it, in the lower bits of a float.
  HWY_INLINE Floats number(Floats distance, Floats stepsFromOrigin) const {
    Floats sum = hn::Min(hn::Max(stepsFromOrigin, hn::Zero(floats)), count_);
    for (std::size_t k = 1; k < Folding::mostPieces && k < folding_.numPieces; ++k) {
      const Floats inPiece = steps(distance - hn::Set(floats, folding_.offsets[k]));
      sum = sum + hn::Min(hn::Max(inPiece, hn::Zero(floats)), hn::Set(floats, folding_.counts[k]));
    }
    return sum + hn::Set(floats, wholeNumbers);
  }

 private:
  Folding folding_;
  Floats stepsPerUnit_;
  Floats count_;
};

template <Purpose purpose, typename Reader, typename Real>
class Placing {
 public:
  static constexpr std::size_t lanes = hn::MaxLanes(floats);
  static constexpr std::size_t numVectors = Block<Real>::groupSize / lanes;

  Placing(const LookupTables& tables, const Block<Real>& block)
      : t_(tables), block_(block), reader_(block.points, tables) {}

  void place(Pending& pending, Places& places) {
    const std::size_t size = block_.points.size;
    std::size_t numGroups = 0;
    for (std::size_t first = 0; first < size; first += Block<Real>::groupSize) {
      Lanes mayBeInside = atSomeZone(first);
      for (std::size_t k = 1; k < numVectors; ++k) {
        mayBeInside = hn::Or(mayBeInside, atSomeZone(first + k * lanes));
      }
      if (hn::AllFalse(floats, mayBeInside)) {
        // Points below and above all zones come in long runs, such as the ground, so whole groups are
        // skipped.
        for (std::size_t i = 0; i < Block<Real>::groupSize; i += hn::Lanes(masks)) {
          hn::StoreU(hn::Zero(masks), masks, block_.masks + first + i);
        }
        if constexpr (purpose == Purpose::Counts) {
          countNoReturns(first, Block<Real>::groupSize);
        }
        continue;
      }
      for (std::size_t k = 0; k < numVectors; ++k) {
        placeVector(first + k * lanes, pending.cells.data(), pending.buckets.data());
      }
      places.groups[numGroups++] = static_cast<std::uint32_t>(first);
    }
    places.numGroups = numGroups;
    places.noReturns = noReturns_;
  }

 private:
  HWY_INLINE Lanes atSomeZone(std::size_t first) const {
    const Floats height = reader_.at(first).z();
    return hn::And(height >= lowestInside_, height <= highestInside_);
  }

  HWY_INLINE void placeVector(std::size_t first, std::uint32_t* cells, std::uint32_t* heights) {
    const auto points = reader_.at(first);
    const Floats x = points.x();
    const Floats y = points.y();
    const Floats z = points.z() - lowestBucket_;
    const Floats column = columns_.steps(x);
    const Floats row = rows_.steps(y);
    const Floats bucket = buckets_.steps(z);
    const Floats columnNumber = columns_.number(x, column) - hn::Set(floats, wholeNumbers);
    const Floats number = hn::MulAdd(columnNumber, numRows_, rows_.number(y, row));
    Ints cell = hn::BitCast(ints, number) - hn::Set(ints, std::int32_t{wholeBits});
    Floats height = buckets_.number(z, bucket);
    // One test for all rare cases: NaN, infinite, or far away.
    const Floats squares = hn::MulAdd(column, column, hn::MulAdd(row, row, bucket * hn::Zero(floats)));
    if (HWY_UNLIKELY(!hn::AllTrue(floats, squares <= squareOfFarthest_))) {
      const Floats farthest = hn::Set(floats, t_.farthest);
      const Lanes isColumnNear = hn::Abs(column) <= farthest;
      const Lanes isRowNear = hn::Abs(row) <= farthest;
      cell = chosen(hn::AndNot(isRowNear, isColumnNear), t_.cellFarAway, cell);
      cell = chosen(hn::Or(hn::IsNaN(column), hn::IsNaN(row)), t_.cellOfNaN, cell);
      const Floats own = points.z();
      height = hn::IfThenElse(hn::IsInf(own), hn::Set(floats, t_.bucketOfInfinite + wholeNumbers), height);
      height = hn::IfThenElse(hn::IsNaN(own), hn::Set(floats, t_.bucketOfNaN + wholeNumbers), height);
      if constexpr (purpose == Purpose::Counts) {
        countNoReturns(first, lanes);
      }
    }
    hn::StoreU(hn::BitCast(words, cell), words, cells + first);
    hn::StoreU(hn::BitCast(words, height), words, heights + first);
  }

  HWY_INLINE static Ints chosen(Lanes where, std::uint32_t value, Ints otherwise) {
    return hn::IfThenElse(hn::RebindMask(ints, where), hn::Set(ints, static_cast<std::int32_t>(value)),
                          otherwise);
  }

  void countNoReturns(std::size_t first, std::size_t size) {
    for (std::size_t i = first; i < first + size; i += lanes) {
      const auto points = reader_.at(i);
      const Floats x = points.x();
      const Floats y = points.y();
      const Floats z = points.z();
      const Lanes isFinite = ((x - x) + (y - y)) + (z - z) == hn::Zero(floats);
      if (HWY_LIKELY(hn::AllTrue(floats, isFinite))) {
        continue;
      }
      const Lanes isInfinite = hn::Or(hn::IsInf(x), hn::Or(hn::IsInf(y), hn::IsInf(z)));
      if (HWY_LIKELY(hn::AllFalse(floats, isInfinite))) {
        noReturns_.count += lanes - hn::CountTrue(floats, isFinite);
      } else {
        // A finite double may be infinite as a float.
        noReturns_.haveInfinite = true;
        for (std::size_t point = i; point < i + lanes; ++point) {
          noReturns_.count += isReturn(block_.points, point) ? 0U : 1U;
        }
      }
    }
  }

  const LookupTables t_;
  const Block<Real> block_;
  const Reader reader_;
  NoReturns noReturns_;

  // Spread over vectors once here, because the compiler would do it again for every vector of points.
  const FoldedVectors columns_{t_.columns};
  const FoldedVectors rows_{t_.rows};
  const FoldedVectors buckets_{t_.buckets};
  const Floats lowestBucket_ = hn::Set(floats, t_.buckets.origin);
  const Floats lowestInside_ = hn::Set(floats, t_.lowestInside);
  const Floats highestInside_ = hn::Set(floats, t_.highestInside);
  const Floats numRows_ = hn::Set(floats, t_.numRows);
  const Floats squareOfFarthest_ = hn::Set(floats, t_.farthest* t_.farthest);
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();
#endif

#endif
