#pragma once

#include <cstdint>
#include <cstring>

#include "trigonometry/Wide.h"

/// Doubles as integer mantissas and exponents.
namespace orvantis::trigonometry {

/// mantissa * 2^exponent.
struct Binary {
  Wide mantissa;
  int exponent;
};

constexpr int mantissaBits = 53;
/// The exponent of the least double above zero.
constexpr int leastExponent = -1074;

inline std::uint64_t bitsOf(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  return bits;
}

inline double doubleOf(std::uint64_t bits) {
  double value = 0.0;
  std::memcpy(&value, &bits, sizeof(value));
  return value;
}

constexpr std::uint64_t signBit = std::uint64_t{1} << 63;
constexpr std::uint64_t bitsOfInfinity = std::uint64_t{0x7FF} << 52;

/// @param magnitude the bits of a finite number without its sign
constexpr Binary binaryOf(std::uint64_t magnitude) {
  const std::uint64_t hidden = std::uint64_t{1} << 52;
  const auto exponent = static_cast<int>(magnitude >> 52);
  const std::uint64_t fraction = magnitude & (hidden - 1);
  return exponent == 0 ? Binary{fraction, leastExponent}
                       : Binary{fraction | hidden, exponent + leastExponent - 1};
}

/// The double mantissa * 2^exponent. It must be a double: the mantissa is at most 2^53, and below 2^52 only
/// with the least exponent.
inline double doubleOf(std::uint64_t mantissa, int exponent) {
  // A mantissa of 2^53 carries into the exponent. A mantissa below 2^52 has no hidden bit, so that the sum
  // makes the exponent 0.
  return doubleOf((static_cast<std::uint64_t>(exponent - leastExponent) << 52) + mantissa);
}

}  // namespace orvantis::trigonometry
