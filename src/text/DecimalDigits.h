#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

// The steps of reading a decimal number of the usual length, quickly and exactly.

namespace orvantis::toolkit::detail {

inline bool isDigit(char c) {
  return static_cast<unsigned char>(c - '0') < 10;
}

constexpr std::array<double, 23> powersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

constexpr std::array<double, 14> fractionsOfTen = {1e0,  1e-1, 1e-2, 1e-3,  1e-4,  1e-5,  1e-6,
                                                   1e-7, 1e-8, 1e-9, 1e-10, 1e-11, 1e-12, 1e-13};

constexpr std::array<std::uint64_t, 20> wholePowersOfTen = [] {
  std::array<std::uint64_t, 20> powers{};
  std::uint64_t power = 1;
  for (std::uint64_t& entry : powers) {
    entry = power;
    power *= 10;
  }
  return powers;
}();

/// Every whole number up to this is a double.
constexpr std::uint64_t mostExact = std::uint64_t{1} << std::numeric_limits<double>::digits;

/// Subtracted from eight characters, it makes the numbers 0 to 9 of digits.
constexpr std::uint64_t zeros = 0x3030303030303030U;

/// The upper bit of each byte whose value is not 0 to 9.
constexpr std::uint64_t marksOfOthers(std::uint64_t values) {
  return (((values & 0x7F7F7F7F7F7F7F7FU) + 0x7676767676767676U) | values) & 0x8080808080808080U;
}

/// The number that 8 digits make, each as 0 to 9 in a byte, the first digit in the lowest byte. Neighbours
/// are joined to two, four and eight digits.
constexpr std::uint64_t joined(std::uint64_t digits) {
  digits = 10 * digits + (digits >> 8U);
  constexpr std::uint64_t lowest = 0x000000FF000000FFU;
  const std::uint64_t outer = (digits & lowest) * (100 + (std::uint64_t{1000000} << 32U));
  const std::uint64_t inner = (digits >> 16U & lowest) * (1 + (std::uint64_t{10000} << 32U));
  return (outer + inner) >> 32U;
}

/// digits / 10^decimals, negative when the sign is 1.
struct ShortDecimal {
  std::uint64_t sign = 0;
  std::uint64_t digits = 0;
  std::size_t decimals = 0;
};

constexpr std::ptrdiff_t shortWindow = 16;

/// Reads a number like "-12.3456" that ends within 16 bytes, with up to 8 digits before its point and some
/// after it. It reads all digits at once, so that a processor can begin the next number before this one is
/// finished. For little-endian machines.
/// @param text at least 16 bytes
/// @return the size of the number; 0 when it does not have this form
inline std::size_t readShort(const char* text, ShortDecimal& number) {
  std::array<std::uint64_t, 2> values{};
  std::memcpy(values.data(), text, sizeof(values));
  values[0] ^= zeros;
  values[1] ^= zeros;
  // Multiplying by this gathers the marks as one bit for each byte that is not a digit.
  constexpr std::uint64_t gather = 0x0102040810204080U;
  std::uint64_t others = (marksOfOthers(values[0]) >> 7U) * gather >> 56U;
  others |= (marksOfOthers(values[1]) >> 7U) * gather >> 56U << 8U;
  // The first character may be a sign. Without a branch: half of the numbers have one, so a processor could
  // not predict it.
  const std::uint64_t sign = others & 1U;
  constexpr std::uint64_t minus = '-' ^ '0';
  others ^= sign;
  const auto point = static_cast<std::size_t>(std::countr_zero(others));
  const auto end = static_cast<std::size_t>(std::countr_zero(others & (others - 1)));
  const std::size_t whole =
      point -
      static_cast<std::size_t>(sign);  // if this is not in the first word, the number does not have this form
  const std::size_t decimals = end - point - 1;
  if (end >= sizeof(values) || whole - 1 >= 8 - sign || decimals == 0 || text[point] != '.' ||
      text[end] == 'e' || text[end] == 'E' || sign * ((values[0] & 0xFFU) ^ minus) != 0) {
    return 0;
  }
  // The fraction begins in one of the two words, and may continue in the other.
  const std::size_t bits = 8 * (point + 1) % 64;
  const std::uint64_t high = point < 7 ? values[1] << 1U << (63 - bits) : 0;
  const std::uint64_t fraction = (point < 7 ? values[0] : values[1]) >> bits | high;
  number.sign = sign;
  number.digits = joined(values[0] >> (8 * sign) << (64 - 8 * whole));
  if (decimals <= 8) {
    number.digits = number.digits * wholePowersOfTen[decimals] + joined(fraction << (64 - 8 * decimals));
  } else {
    // A number near zero, such as "0.0012345678": what is before the last eight digits, and these.
    const std::size_t before = decimals - 8;
    std::uint64_t last = 0;
    std::memcpy(&last, text + end - sizeof(last), sizeof(last));
    number.digits = number.digits * wholePowersOfTen[before] + joined(fraction << (64 - 8 * before));
    number.digits = number.digits * wholePowersOfTen[8] + joined(last ^ zeros);
  }
  number.decimals = decimals;
  return end;
}

/// @param sign 1 to make it negative, else 0
inline double withSign(double value, std::uint64_t sign) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  bits |= sign << 63U;
  std::memcpy(&value, &bits, sizeof(value));
  return value;
}

/// Whether rounding the double to float gives the float nearest to the number that the double stands for. The
/// double differs from that number by at most half a unit of its last place plus `units`. False when the
/// middle between two floats is that close.
inline bool roundsLikeItsNumber(double value, std::uint64_t units) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  constexpr std::uint64_t belowFloat = (std::uint64_t{1} << 29U) - 1;
  constexpr std::uint64_t middle = std::uint64_t{1} << 28U;
  return (bits & belowFloat) - (middle - units) > 2 * units &&
         (value == 0 || (value >= static_cast<double>(std::numeric_limits<float>::min()) &&
                         value <= static_cast<double>(std::numeric_limits<float>::max())));
}

/// The nearest number. @return whether it could be decided
inline bool toReal(const ShortDecimal& number, double& value) {
  // Both are exact, so the quotient is rounded only once.
  value = withSign(static_cast<double>(number.digits) / powersOfTen[number.decimals], number.sign);
  return number.digits <= mostExact;
}

inline bool toReal(const ShortDecimal& number, float& value) {
  // A product is faster than a quotient. It is off by up to two units, which rarely matters for a float.
  const double product = static_cast<double>(number.digits) * fractionsOfTen[number.decimals];
  value = static_cast<float>(withSign(product, number.sign));
  return number.digits <= mostExact && roundsLikeItsNumber(product, 2);
}

}  // namespace orvantis::toolkit::detail
