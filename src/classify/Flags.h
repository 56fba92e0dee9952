#pragma once

#include <cstdint>

namespace orvantis::filter::classify {

/// Bits of a mask that stand for no zone. Sets of zones that come from the tables have them, so that what two
/// tables have in common tells whether a point is decided; no caller sees them.
inline constexpr std::uint64_t openCell = std::uint64_t{1}
                                          << 63U;  ///< the cell's zones are yet to be decided
inline constexpr std::uint64_t openHeight = std::uint64_t{1} << 62U;  ///< and those of the height

inline constexpr unsigned numZoneBits = 56;
inline constexpr std::uint64_t zoneBits = (std::uint64_t{1} << numZoneBits) - 1;

/// Between the zones and the flags stands the number of a bit: while the mask has it, the cell is to be
/// decided. In a cut cell that is the bit of its one border's zone, which often is not at the height of a
/// point; in others it is the flag.
inline constexpr std::uint64_t decidingBits = std::uint64_t{63} << numZoneBits;
constexpr std::uint64_t decidedWhile(unsigned bit) {
  return std::uint64_t{bit} << numZoneBits;
}
inline constexpr unsigned always = 63;
constexpr bool isStillOpen(std::uint64_t mask) {
  return (mask >> (mask >> numZoneBits & 63U) & 1U) != 0;
}

}  // namespace orvantis::filter::classify
