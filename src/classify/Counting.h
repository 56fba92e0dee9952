#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace orvantis::filter::classify {

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
