#pragma once

#include <cstdint>

namespace orvantis::filter::classify {

/// Bits of a mask that stand for no zone. Sets of zones that come from the tables have them, so that what two
/// tables have in common tells whether a point is decided; no caller sees them.
inline constexpr std::uint64_t openCell = std::uint64_t{1}
                                          << 63U;  ///< the cell's zones are yet to be decided
inline constexpr std::uint64_t openHeight = std::uint64_t{1} << 62U;  ///< and those of the height
inline constexpr std::uint64_t zoneBits = (std::uint64_t{1} << 56U) - 1;

}  // namespace orvantis::filter::classify
