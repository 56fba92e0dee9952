#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace orvantis::filter::classify {

/// The growing counts of points by field zone, and of the points in exclusion zones. Plane k has bit k of all
/// counts, in several words that are added up at the end.
struct BitCounts {
  static constexpr std::size_t excluded = 24;  ///< the number of this count, after those of the field zones
  static constexpr std::uint32_t excludedBit = 1U << excluded;
  static constexpr std::size_t numCounts = 25;
  static constexpr std::size_t numPlanes = std::numeric_limits<std::uint64_t>::digits;
  static constexpr std::size_t numWords = 16;

  alignas(64) std::array<std::array<std::uint32_t, numWords>, numPlanes> planes{};

  std::array<std::uint64_t, numCounts> sums() const;
};

/// Adds masks: a point that no exclusion zone holds counts for its field zones, any other for the excluded.
void countZones(const std::uint64_t* masks, std::size_t size, BitCounts& counts);

}  // namespace orvantis::filter::classify
