#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "text/Number.h"

namespace orvantis::toolkit {

/// Reads a decimal number of the usual length without a call: a frame has hundreds of thousands. Gives what
/// `readNumber` gives, the nearest number, and takes a leading plus as well. A number that is too small for
/// a float becomes the nearest float, which may be zero.
/// @param last where the text ends
template <typename Real>
std::from_chars_result readDecimal(const char* first, const char* last, Real& value);

namespace detail {

constexpr std::array<double, 23> powersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

std::from_chars_result readLongDecimal(const char* first, const char* last, float& value);
std::from_chars_result readLongDecimal(const char* first, const char* last, double& value);

inline bool isDigit(char c) {
  return static_cast<unsigned char>(c - '0') < 10;
}

// Whether a double that is nearest to some number has the float nearest to that number. It has not where it
// lies exactly between two floats and the number beside it.
inline bool roundsLikeItsNumber(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  constexpr std::uint64_t belowFloat = (std::uint64_t{1} << 29U) - 1;
  const double size = value < 0 ? -value : value;
  return (bits & belowFloat) != (std::uint64_t{1} << 28U) &&
         (size == 0 || (size >= static_cast<double>(std::numeric_limits<float>::min()) &&
                        size <= static_cast<double>(std::numeric_limits<float>::max())));
}

}  // namespace detail

template <typename Real>
std::from_chars_result readDecimal(const char* first, const char* last, Real& value) {
  using detail::isDigit;
  const char* at = first;
  const bool isNegative = at != last && *at == '-';
  at += isNegative ? 1 : 0;
  std::uint64_t digits = 0;
  const auto readDigits = [&] {
    const char* const begin = at;
    for (; at != last && isDigit(*at); ++at) {
      digits = 10 * digits + static_cast<std::uint64_t>(*at - '0');
    }
    return at - begin;
  };
  std::ptrdiff_t count = readDigits();
  std::ptrdiff_t power = 0;
  if (at != last && *at == '.') {
    ++at;
    power = -readDigits();
    count -= power;
  }
  constexpr std::ptrdiff_t mostDigits = 19;  // as many as 64 bits hold
  if (at != last && (*at == 'e' || *at == 'E') && count > 0 && count <= mostDigits) {
    const char* exponent = at + 1;
    const bool isSmall = exponent != last && *exponent == '-';
    exponent += exponent != last && (*exponent == '-' || *exponent == '+') ? 1 : 0;
    const char* const begin = exponent;
    std::ptrdiff_t size = 0;
    for (; exponent != last && isDigit(*exponent) && exponent - begin < 4; ++exponent) {
      size = 10 * size + (*exponent - '0');
    }
    if (exponent == begin) {
      return detail::readLongDecimal(first, last, value);
    }
    power += isSmall ? -size : size;
    at = exponent;
  }
  // Both are exact in double here, so that their product or quotient is rounded once.
  constexpr std::uint64_t mostExact = std::uint64_t{1} << std::numeric_limits<double>::digits;
  constexpr auto mostPower = static_cast<std::ptrdiff_t>(detail::powersOfTen.size()) - 1;
  if (count == 0 || count > mostDigits || digits > mostExact || power < -mostPower || power > mostPower ||
      (at != last && isDigit(*at))) {
    return detail::readLongDecimal(first, last, value);
  }
  auto number = static_cast<double>(digits);
  if (power < 0) {
    number /= detail::powersOfTen[static_cast<std::size_t>(-power)];
  } else {
    number *= detail::powersOfTen[static_cast<std::size_t>(power)];
  }
  if constexpr (std::is_same_v<Real, float>) {
    if (!detail::roundsLikeItsNumber(number)) {
      return detail::readLongDecimal(first, last, value);
    }
  }
  value = static_cast<Real>(isNegative ? -number : number);
  return {at, std::errc()};
}

}  // namespace orvantis::toolkit
