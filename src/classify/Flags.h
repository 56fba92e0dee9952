#pragma once

#include <cstdint>

namespace orvantis::filter::classify {

/// Bits of a mask that do not stand for a zone. The sets of zones in the tables have them: the bits that two
/// sets have in common tell whether a point is decided. No caller sees them.
inline constexpr std::uint64_t openCell = std::uint64_t{1} << 63U;  ///< the zones of the cell are not decided
inline constexpr std::uint64_t openHeight = std::uint64_t{1}
                                            << 62U;  ///< the zones of the height are not decided

inline constexpr unsigned numZoneBits = 56;
inline constexpr std::uint64_t zoneBits = (std::uint64_t{1} << numZoneBits) - 1;

/// The bits between the zones and the flags are the number of another bit. While the mask has that bit, the
/// cell is not decided. In a cut cell it is the bit of the zone whose border it is, which often is not at the
/// height of a point, so that nothing is left to decide; in other cells it is the flag.
inline constexpr std::uint64_t decidingBits = std::uint64_t{63} << numZoneBits;
constexpr std::uint64_t decidedWhile(unsigned bit) {
  return std::uint64_t{bit} << numZoneBits;
}
inline constexpr unsigned always = 63;
constexpr bool isStillOpen(std::uint64_t mask) {
  return (mask >> (mask >> numZoneBits & 63U) & 1U) != 0;
}

}  // namespace orvantis::filter::classify
