#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

#include <filter/classify/PointClassifier.h>

#include "classify/Grid.h"
#include "classify/Heights.h"
#include "classify/Undecided.h"

namespace orvantis::filter::classify {

/// Copies coordinates into three arrays.
void copyColumns(const PointsView<float>& points, float* x, float* y, float* z);
void copyColumns(const PointsView<double>& points, double* x, double* y, double* z);

/// Looks up to PointList::capacity points up: their cells' zones and their heights' zones in `masks`, and
/// those of undecided cells in `pending`. Runs on the best instructions that the processor has.
/// @param fetchesAll all coordinates before they are needed, not only the heights: for masks that stay in the
/// cache. Where masks go to memory, frames with much ground take a tenth longer with it
/// @return the number of points with a coordinate that is not finite
std::size_t lookUp(const Grid& grid, const Heights& heights, const float* x, const float* y, const float* z,
                   std::size_t size, std::uint64_t* masks, Pending& pending, bool fetchesAll);
std::size_t lookUp(const Grid& grid, const Heights& heights, const double* x, const double* y,
                   const double* z, std::size_t size, std::uint64_t* masks, Pending& pending,
                   bool fetchesAll);

/// Counts of points by field zone, and of those in exclusion zones, while they grow. Bit k of all counts
/// stands in plane k, in several words that are added up at the end.
struct BitCounts {
  static constexpr std::size_t excluded = 24;  ///< the count after the field zones'
  static constexpr std::uint32_t excludedBit = 1U << excluded;
  static constexpr std::size_t numCounts = 25;
  static constexpr std::size_t numPlanes = std::numeric_limits<std::uint64_t>::digits;
  static constexpr std::size_t numWords = 16;

  alignas(64) std::array<std::array<std::uint32_t, numWords>, numPlanes> planes{};

  std::array<std::uint64_t, numCounts> sums() const;
};

/// Adds masks: to each field zone the points that no exclusion zone holds, and the others to the excluded.
void countZones(const std::uint64_t* masks, std::size_t size, BitCounts& counts);

}  // namespace orvantis::filter::classify
