// Read once for each kind of processor: the guard toggles.
#if defined(ORVANTIS_CLASSIFY_POINT_LOOKUP) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVANTIS_CLASSIFY_POINT_LOOKUP
#undef ORVANTIS_CLASSIFY_POINT_LOOKUP
#else
#define ORVANTIS_CLASSIFY_POINT_LOOKUP
#endif

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <hwy/highway.h>

#include "classify/LookupTables.h"

HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

// One point at a time: for the last points of a block, and for processors without vectors. Without a branch
// that depends on where an ordinary point is.
template <typename Real>
class PointLookup {
 public:
  PointLookup(const LookupTables& tables, std::uint64_t* out) : t_(tables), out_(out) {}

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
      noReturns_ += std::isfinite(x) && std::isfinite(y) && std::isfinite(z) ? 0 : 1;
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

  std::size_t numNoReturns() const { return noReturns_; }

 private:
  static std::uint32_t roundedBits(float position) {
    const float rounded = position + wholeNumbers;
    std::uint32_t bits = 0;
    std::memcpy(&bits, &rounded, sizeof(bits));
    return bits;
  }

  LookupTables t_;
  std::uint64_t* out_;
  std::size_t noReturns_ = 0;
};
}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();

#endif
