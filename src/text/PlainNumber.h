#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

// Conversions between numbers and text for systems whose standard library cannot convert floating-point
// numbers without a locale. They rely on a C library, such as that of WebAssembly, whose strtod and snprintf
// round correctly and have only the classic locale. Only Number.cpp includes this. A test compares it with
// the standard library's conversions on systems that have both.

namespace orvantis::toolkit::plain {

inline bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// The end of the longest decimal number at the beginning of the text; `first` when there is none.
inline const char* endOfNumber(const char* first, const char* last) {
  const char* at = first;
  if (at != last && *at == '-') {
    ++at;
  }
  const auto word = [&](std::string_view expected) {
    if (static_cast<std::size_t>(last - at) < expected.size()) {
      return false;
    }
    for (std::size_t i = 0; i < expected.size(); ++i) {
      if ((at[i] | 0x20) != expected[i]) {
        return false;
      }
    }
    return true;
  };
  if (word("infinity")) {
    return at + 8;
  }
  if (word("inf") || word("nan")) {
    return at + 3;
  }
  const char* const digits = at;
  while (at != last && isDigit(*at)) {
    ++at;
  }
  auto count = at - digits;
  if (at != last && *at == '.') {
    const char* const fraction = ++at;
    while (at != last && isDigit(*at)) {
      ++at;
    }
    count += at - fraction;
  }
  if (count == 0) {
    return first;
  }
  if (at != last && (*at | 0x20) == 'e') {
    const char* exponent = at + 1;
    if (exponent != last && (*exponent == '-' || *exponent == '+')) {
      ++exponent;
    }
    if (exponent != last && isDigit(*exponent)) {
      at = exponent;
      while (at != last && isDigit(*at)) {
        ++at;
      }
    }
  }
  return at;
}

template <typename Real>
std::from_chars_result readNumber(const char* first, const char* last, Real& value,
                                  Real (*convert)(const char*, char**)) {
  const char* const end = endOfNumber(first, last);
  if (end == first) {
    return {first, std::errc::invalid_argument};
  }
  const std::string text(first, end);
  const Real number = convert(text.c_str(), nullptr);
  // Out of range: the text is neither zero nor infinite, but the nearest double is.
  const bool isWord = (text.back() | 0x20) > '9';
  const bool isZero =
      text.substr(0, text.find_first_of("eE")).find_first_of("123456789") == std::string::npos;
  if (!isWord && ((number == 0 && !isZero) || std::isinf(number))) {
    return {end, std::errc::result_out_of_range};
  }
  value = number;
  return {end, std::errc()};
}

/// A number as its fewest digits: d.ddd * 10^exponent.
struct ShortestDigits {
  std::string digits;
  int exponent = 0;
};

/// For numbers of the usual size, by whole numbers. The number is m * 2^-shift. With k decimals it is nearest
/// to n / 10^k where n is nearest to m * 10^k / 2^shift, which fits into 128 bits; and that reads back as the
/// same number when the two differ by less than half a unit in its last place, 10^k of the same whole
/// numbers.
/// @return nothing for other numbers
inline std::optional<ShortestDigits> usualDigits(double magnitude) {
  constexpr double least = 1e-6;
  constexpr double most = 1e15;
  constexpr int mostDigits = 17;
  __extension__ using Wide = unsigned __int128;
  if (!(magnitude >= least && magnitude < most)) {
    return std::nullopt;
  }
  int exponent = 0;
  const double fraction = std::frexp(magnitude, &exponent);
  const auto m = static_cast<std::uint64_t>(std::ldexp(fraction, 53));
  const int shift = 53 - exponent;
  if (m == std::uint64_t{1} << 52U) {
    return std::nullopt;  // the doubles below it are closer to each other
  }
  const Wide unit = Wide{1} << static_cast<unsigned>(shift);
  Wide power = 1;
  for (int decimals = 0; decimals <= 22; ++decimals, power *= 10) {
    const Wide product = m * power;
    auto n = static_cast<std::uint64_t>(product >> static_cast<unsigned>(shift));
    const Wide rest = product & (unit - 1);
    const bool isUp = 2 * rest > unit || (2 * rest == unit && n % 2 == 1);
    n += isUp ? 1 : 0;
    if (2 * (isUp ? unit - rest : rest) < power) {
      std::string digits = std::to_string(n);
      const int size = static_cast<int>(digits.size());
      digits.erase(digits.find_last_not_of('0') + 1);
      return size <= mostDigits ? std::optional(ShortestDigits{digits, size - 1 - decimals}) : std::nullopt;
    }
  }
  return std::nullopt;
}

/// For every other number, with as few digits as read back.
inline ShortestDigits anyDigits(double magnitude) {
  std::array<char, 40> buffer{};
  std::string scientific;
  for (int decimals = 0; decimals <= 16; ++decimals) {
    const int size = std::snprintf(buffer.data(), buffer.size(), "%.*e", decimals, magnitude);
    scientific.assign(buffer.data(), static_cast<std::size_t>(size));
    if (std::strtod(scientific.c_str(), nullptr) == magnitude) {
      break;
    }
  }
  ShortestDigits result;
  const std::size_t e = scientific.find('e');
  result.exponent = std::atoi(scientific.c_str() + e + 1);
  for (const char c : scientific.substr(0, e)) {
    result.digits += isDigit(c) ? std::string(1, c) : "";
  }
  return result;
}

/// The shortest text that reads back as the same number, with or without an exponent, whichever is shorter.
inline std::string shortest(double value) {
  if (!std::isfinite(value)) {
    return std::isnan(value) ? (std::signbit(value) ? "-nan" : "nan") : (value < 0 ? "-inf" : "inf");
  }
  const double magnitude = std::fabs(value);
  const auto usual = usualDigits(magnitude);
  const auto [digits, exponent] = usual ? *usual : anyDigits(magnitude);
  const int count = static_cast<int>(digits.size());
  std::string fixed;
  if (exponent >= count - 1) {
    // Behind the shortest digits come the number's own digits, not zeros.
    std::array<char, 400> whole{};
    std::snprintf(whole.data(), whole.size(), "%.0f", magnitude);
    fixed = whole.data();
  } else if (exponent >= 0) {
    const auto point = static_cast<std::size_t>(exponent) + 1;
    fixed = digits.substr(0, point) + "." + digits.substr(point);
  } else {
    fixed = "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  }
  const std::string power = std::to_string(std::abs(exponent));
  const std::string scientific = digits.substr(0, 1) + (count > 1 ? "." + digits.substr(1) : "") +
                                 (exponent < 0 ? "e-" : "e+") + (power.size() < 2 ? "0" : "") + power;
  return (std::signbit(value) ? "-" : "") + (fixed.size() <= scientific.size() ? fixed : scientific);
}

}  // namespace orvantis::toolkit::plain
