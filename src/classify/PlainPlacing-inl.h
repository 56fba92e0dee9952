// Finds where points lie in the tables without vectors of Highway: in loops over a group that a compiler may
// turn into whatever vectors it knows. Read once for each kind of processor: the guard toggles.
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
  using Numbers = std::array<float, size>;

  void read(std::size_t first) {
    const PointsView<Real>& points = block_.points;
    const auto originX = static_cast<Real>(t_.columns.origin);
    const auto originY = static_cast<Real>(t_.rows.origin);
    for (std::size_t i = 0; i < size; ++i) {
      const std::size_t offset = (first + i) * points.stride;
      x_[i] = static_cast<float>(valueAt<Real>(points.x, offset) - originX);
      y_[i] = static_cast<float>(valueAt<Real>(points.y, offset) - originY);
      z_[i] = static_cast<float>(valueAt<Real>(points.z, offset));
    }
  }

  bool isOutsideOfHeights() const {
    unsigned numInside = 0;
    for (const float z : z_) {
      numInside += static_cast<unsigned>(z >= t_.lowestInside) & static_cast<unsigned>(z <= t_.highestInside);
    }
    return numInside == 0;
  }

  // Like Folding::position, for all values at once.
  static void positions(const Folding& folding, const Numbers& distances, Numbers& sums) {
    sums.fill(0.0F);
    for (std::size_t k = 0; k < folding.numPieces; ++k) {
      const float offset = folding.offsets[k];
      const float count = folding.counts[k];
      for (std::size_t i = 0; i < size; ++i) {
        const float steps = (distances[i] - offset) * folding.stepsPerUnit;
        const float atLeast = steps > 0.0F ? steps : 0.0F;
        sums[i] += atLeast < count ? atLeast : count;
      }
    }
  }

  static std::uint32_t bitsOf(float number) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &number, sizeof(bits));
    return bits;
  }

  void placeGroup(std::size_t first, std::uint32_t* cells, std::uint32_t* heights) {
    Numbers columns;
    Numbers rows;
    Numbers buckets;
    Numbers aboveLowest;
    for (std::size_t i = 0; i < size; ++i) {
      aboveLowest[i] = z_[i] - t_.buckets.origin;
    }
    positions(t_.columns, x_, columns);
    positions(t_.rows, y_, rows);
    positions(t_.buckets, aboveLowest, buckets);
    unsigned numOrdinary = 0;
    for (std::size_t i = 0; i < size; ++i) {
      const float column = columns[i] + wholeNumbers - wholeNumbers;
      cells[i] = bitsOf(column * t_.numRows + (rows[i] + wholeNumbers)) - wholeBits;
      heights[i] = bitsOf(buckets[i] + wholeNumbers);
      numOrdinary += isOrdinary(x_[i], y_[i], aboveLowest[i]) ? 1U : 0U;
    }
    if (numOrdinary < size) {
      for (std::size_t i = 0; i < size; ++i) {
        placeOdd(i, cells[i], heights[i]);
      }
      countNoReturns(first);
    }
  }

  // Finite, and not far away.
  bool isOrdinary(float x, float y, float z) const {
    const float column = x * t_.columns.stepsPerUnit;
    const float row = y * t_.rows.stepsPerUnit;
    return column * column + (row * row + z * t_.buckets.stepsPerUnit * 0.0F) <= t_.farthest * t_.farthest;
  }

  void placeOdd(std::size_t i, std::uint32_t& cell, std::uint32_t& height) const {
    const float column = x_[i] * t_.columns.stepsPerUnit;
    const float row = y_[i] * t_.rows.stepsPerUnit;
    if (std::isnan(column) || std::isnan(row)) {
      cell = t_.cellOfNaN;
    } else if (std::abs(column) <= t_.farthest && !(std::abs(row) <= t_.farthest)) {
      cell = t_.cellFarAway;
    }
    if (std::isnan(z_[i])) {
      height = bitsOf(t_.bucketOfNaN + wholeNumbers);
    } else if (std::isinf(z_[i])) {
      height = bitsOf(t_.bucketOfInfinite + wholeNumbers);
    }
  }

  void countNoReturns(std::size_t first) {
    if constexpr (purpose == Purpose::Counts) {
      for (std::size_t i = 0; i < size; ++i) {
        if (!std::isfinite(x_[i]) || !std::isfinite(y_[i]) || !std::isfinite(z_[i])) {
          // A finite double may be infinite as a float.
          noReturns_.count += isReturn(block_.points, first + i) ? 0U : 1U;
          noReturns_.haveInfinite =
              noReturns_.haveInfinite || std::isinf(x_[i]) || std::isinf(y_[i]) || std::isinf(z_[i]);
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
