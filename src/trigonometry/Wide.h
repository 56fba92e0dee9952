#pragma once

#include <bit>
#include <cstdint>

namespace orvantis::trigonometry {

/// 128 bits; a type of both g++ and clang, for WebAssembly too. `using` would not take the word that says
/// that this extension is meant.
__extension__ typedef unsigned __int128 Wide;  // NOLINT(modernize-use-using)

constexpr Wide wide(std::uint64_t high, std::uint64_t low) {
  return (static_cast<Wide>(high) << 64) | low;
}

constexpr std::uint64_t highHalf(Wide value) {
  return static_cast<std::uint64_t>(value >> 64);
}
constexpr std::uint64_t lowHalf(Wide value) {
  return static_cast<std::uint64_t>(value);
}

/// The upper 128 of the 256 bits of the product: a * b / 2^128, rounded down.
constexpr Wide highProduct(Wide a, Wide b) {
  const Wide lowLow = static_cast<Wide>(lowHalf(a)) * lowHalf(b);
  const Wide lowHigh = static_cast<Wide>(lowHalf(a)) * highHalf(b);
  const Wide highLow = static_cast<Wide>(highHalf(a)) * lowHalf(b);
  const Wide highHigh = static_cast<Wide>(highHalf(a)) * highHalf(b);
  const Wide carried = static_cast<Wide>(highHalf(lowLow)) + lowHalf(lowHigh) + lowHalf(highLow);
  return highHigh + highHalf(lowHigh) + highHalf(highLow) + highHalf(carried);
}

/// Shifts that may be as long as the number or longer.
constexpr Wide shiftedRight(Wide value, int bits) {
  return bits < 128 ? value >> bits : 0;
}

/// 127 for zero, so that a shift by it is one.
constexpr int leadingZeros(Wide value) {
  return highHalf(value) != 0 ? std::countl_zero(highHalf(value)) : 64 + std::countl_zero(lowHalf(value) | 1);
}

}  // namespace orvantis::trigonometry
