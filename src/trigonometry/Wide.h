#pragma once

#include <bit>
#include <cstdint>

namespace orvantis::trigonometry {

/// An unsigned integer of 128 bits, which g++ and clang have, also for WebAssembly. A typedef, because
/// `using` does not accept __extension__, which prevents a warning.
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

/// Shifts right by any number of bits, also by 128 or more.
constexpr Wide shiftedRight(Wide value, int bits) {
  return bits < 128 ? value >> bits : 0;
}

/// 127 for zero, so that shifting by the result is valid.
constexpr int leadingZeros(Wide value) {
  return highHalf(value) != 0 ? std::countl_zero(highHalf(value)) : 64 + std::countl_zero(lowHalf(value) | 1);
}

}  // namespace orvantis::trigonometry
