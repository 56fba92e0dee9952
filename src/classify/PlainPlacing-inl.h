// Finds where points lie in the tables without vectors of Highway: with those of the compiler, which every
// processor has in some way. Read once for each kind of processor: the guard toggles.
#if defined(ORVANTIS_CLASSIFY_PLAIN_PLACING) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVANTIS_CLASSIFY_PLAIN_PLACING
#undef ORVANTIS_CLASSIFY_PLAIN_PLACING
#else
#define ORVANTIS_CLASSIFY_PLAIN_PLACING
#endif

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <hwy/highway.h>

#include "classify/Block.h"
#include "classify/Lookup.h"
#include "classify/LookupTables.h"
#include "classify/Pending.h"
#include "classify/Places.h"

HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

// Both g++ and clang compute with them as with numbers, and turn them into instructions of the processor.
using FourFloats = float __attribute__((vector_size(16)));
using FourInts = std::int32_t __attribute__((vector_size(16)));

HWY_INLINE FourFloats fourOf(float value) {
  return FourFloats{value, value, value, value};
}

HWY_INLINE FourInts intsOf(FourFloats floats) {
  FourInts bits;
  std::memcpy(&bits, &floats, sizeof(bits));
  return bits;
}

// Whether a comparison holds anywhere.
HWY_INLINE bool isAny(FourInts where) {
  std::array<std::uint64_t, 2> halves{};
  std::memcpy(halves.data(), &where, sizeof(where));
  return (halves[0] | halves[1]) != 0;
}

template <Purpose purpose, typename Real>
class PlainPlacing {
 public:
  PlainPlacing(const LookupTables& tables, const Block<Real>& block) : t_(tables), block_(block) {}

  void place(Pending& pending, Places& places) {
    std::size_t numGroups = 0;
    for (std::size_t first = 0; first < block_.points.size; first += size) {
      read(first);
      if (isOutsideOfHeights()) {
        std::fill_n(block_.masks + first, size, std::uint64_t{0});
        countNoReturns(first);
        continue;
      }
      placeGroup(first, pending.cells.data() + first, pending.buckets.data() + first);
      places.groups[numGroups++] = static_cast<std::uint32_t>(first);
    }
    places.numGroups = numGroups;
    places.noReturns = noReturns_;
  }

 private:
  static constexpr std::size_t size = Block<Real>::groupSize;
  struct Numbers {
    FourFloats four(std::size_t first) const {
      FourFloats result;
      std::memcpy(&result, values.data() + first, sizeof(result));
      return result;
    }
    alignas(16) std::array<float, size> values;
  };

  void read(std::size_t first) {
    const PointsView<Real>& points = block_.points;
    const auto originX = static_cast<Real>(t_.columns.origin);
    const auto originY = static_cast<Real>(t_.rows.origin);
    for (std::size_t i = 0; i < size; ++i) {
      const std::size_t offset = (first + i) * points.stride;
      x_.values[i] = static_cast<float>(valueAt<Real>(points.x, offset) - originX);
      y_.values[i] = static_cast<float>(valueAt<Real>(points.y, offset) - originY);
      z_.values[i] = static_cast<float>(valueAt<Real>(points.z, offset));
    }
  }

  bool isOutsideOfHeights() const {
    FourInts inside{};
    for (std::size_t i = 0; i < size; i += 4) {
      const FourFloats z = z_.four(i);
      inside |= (z >= fourOf(t_.lowestInside)) & (z <= fourOf(t_.highestInside));
    }
    return !isAny(inside);
  }

  // Like Folding::position.
  static FourFloats positions(const Folding& folding, FourFloats distances) {
    FourFloats sums{};
    for (std::size_t k = 0; k < folding.numPieces; ++k) {
      const FourFloats steps = (distances - fourOf(folding.offsets[k])) * fourOf(folding.stepsPerUnit);
      const FourFloats atLeast = steps > FourFloats{} ? steps : FourFloats{};
      const FourFloats count = fourOf(folding.counts[k]);
      sums += atLeast < count ? atLeast : count;
    }
    return sums;
  }

  static std::uint32_t bitsOf(float number) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &number, sizeof(bits));
    return bits;
  }

  void placeGroup(std::size_t first, std::uint32_t* cells, std::uint32_t* heights) {
    const FourFloats whole = fourOf(wholeNumbers);
    FourInts odd{};
    for (std::size_t i = 0; i < size; i += 4) {
      const FourFloats x = x_.four(i);
      const FourFloats y = y_.four(i);
      const FourFloats z = z_.four(i) - fourOf(t_.buckets.origin);
      const FourFloats column = positions(t_.columns, x) + whole - whole;
      const FourFloats number = column * fourOf(t_.numRows) + (positions(t_.rows, y) + whole);
      const FourInts cell = intsOf(number) - static_cast<std::int32_t>(wholeBits);
      const FourFloats height = positions(t_.buckets, z) + whole;
      std::memcpy(cells + i, &cell, sizeof(cell));
      std::memcpy(heights + i, &height, sizeof(height));
      odd |= ~areOrdinary(x, y, z);
    }
    if (isAny(odd)) {
      for (std::size_t i = 0; i < size; ++i) {
        placeOdd(i, cells[i], heights[i]);
      }
      countNoReturns(first);
    }
  }

  // Finite, and not far away.
  FourInts areOrdinary(FourFloats x, FourFloats y, FourFloats z) const {
    const FourFloats column = x * fourOf(t_.columns.stepsPerUnit);
    const FourFloats row = y * fourOf(t_.rows.stepsPerUnit);
    const FourFloats zeros = z * fourOf(t_.buckets.stepsPerUnit) * FourFloats{};
    return column * column + (row * row + zeros) <= fourOf(t_.farthest * t_.farthest);
  }

  void placeOdd(std::size_t i, std::uint32_t& cell, std::uint32_t& height) const {
    const float column = x_.values[i] * t_.columns.stepsPerUnit;
    const float row = y_.values[i] * t_.rows.stepsPerUnit;
    if (std::isnan(column) || std::isnan(row)) {
      cell = t_.cellOfNaN;
    } else if (std::abs(column) <= t_.farthest && !(std::abs(row) <= t_.farthest)) {
      cell = t_.cellFarAway;
    }
    if (std::isnan(z_.values[i])) {
      height = bitsOf(t_.bucketOfNaN + wholeNumbers);
    } else if (std::isinf(z_.values[i])) {
      height = bitsOf(t_.bucketOfInfinite + wholeNumbers);
    }
  }

  void countNoReturns(std::size_t first) {
    if constexpr (purpose == Purpose::Counts) {
      for (std::size_t i = 0; i < size; ++i) {
        const float x = x_.values[i];
        const float y = y_.values[i];
        const float z = z_.values[i];
        if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z)) {
          // A finite double may be infinite as a float.
          noReturns_.count += isReturn(block_.points, first + i) ? 0U : 1U;
          noReturns_.haveInfinite =
              noReturns_.haveInfinite || std::isinf(x) || std::isinf(y) || std::isinf(z);
        }
      }
    }
  }

  const LookupTables t_;
  const Block<Real> block_;
  NoReturns noReturns_;
  Numbers x_;
  Numbers y_;
  Numbers z_;
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();

#endif
