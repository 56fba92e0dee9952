#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "classify/Grid.h"
#include "classify/Heights.h"
#include "classify/Undecided.h"

namespace orvantis::filter::classify {

/// The points of a block that the tables alone do not decide.
struct Pending {
  PointList cut;
  PointList crossed;
  PointList heights;
};

/// Looks up to PointList::capacity points up: their cells' zones and their heights' zones in `masks`, and
/// those of undecided cells in `pending`. Runs on the best instructions that the processor has.
/// @return the number of points with a coordinate that is not finite
std::size_t lookUp(const Grid& grid, const Heights& heights, const float* x, const float* y, const float* z,
                   std::size_t size, std::uint64_t* masks, Pending& pending);
std::size_t lookUp(const Grid& grid, const Heights& heights, const double* x, const double* y,
                   const double* z, std::size_t size, std::uint64_t* masks, Pending& pending);

/// Counts of points by field zone, while they grow. Bit k of all counts stands in plane k, in several words
/// that are added up at the end; a word has two bits for each zone.
struct BitCounts {
  static constexpr std::size_t numZones = 24;
  static constexpr std::size_t numPlanes = 40;  ///< for 2^40 points a word, more than memory holds
  static constexpr std::size_t numWords = 8;

  alignas(64) std::uint64_t planes[numPlanes][numWords] = {};
  std::size_t numExcluded = 0;

  std::array<std::uint64_t, numZones> inside() const;
};

/// Adds masks: to each zone the points that no exclusion zone holds, and to `numExcluded` the others.
void countZones(const std::uint64_t* masks, std::size_t size, BitCounts& counts);

}  // namespace orvantis::filter::classify
