#include "text/Decimal.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "text/Number.h"

namespace orvantis::toolkit::detail {
namespace {

const char* withoutPlus(const char* first, const char* last) {
  return last - first > 1 && first[0] == '+' && first[1] != '-' ? first + 1 : first;
}

std::from_chars_result readAny(const char* first, const char* last, double& value) {
  return readNumber(withoutPlus(first, last), last, value);
}

std::from_chars_result readAny(const char* first, const char* last, float& value) {
  const auto result = readNumber(withoutPlus(first, last), last, value);
  if (result.ec != std::errc::result_out_of_range) {
    return result;
  }
  double wide = 0.0;
  const auto wideResult = readAny(first, last, wide);
  if (wideResult.ec == std::errc() && std::fabs(wide) < 1.0) {
    value = static_cast<float>(wide);
    return wideResult;
  }
  return result;
}

// Appends the digits that begin at `at` to a number, eight at a time. Too many digits overflow the number,
// without undefined behaviour. @return the end of the digits
const char* readDigits(const char* at, const char* last, std::uint64_t& number) {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
  constexpr std::ptrdiff_t word = 8;
  while (last - at >= word) {
    std::uint64_t values = 0;
    std::memcpy(&values, at, sizeof(values));
    values ^= zeros;
    const std::uint64_t others = marksOfOthers(values);
    if (others != 0) {
      const auto count = static_cast<unsigned>(std::countr_zero(others)) / 8;
      if (count != 0) {
        number = number * wholePowersOfTen[count] + joined(values << (64 - 8 * count));
      }
      return at + count;
    }
    number = number * wholePowersOfTen[word] + joined(values);
    at += word;
  }
#endif
  for (; at != last && isDigit(*at); ++at) {
    number = 10 * number + static_cast<std::uint64_t>(*at - '0');
  }
  return at;
}

__extension__ using Wide = unsigned __int128;

/// 1 / 5^i, times the power of two that makes it fill 64 bits, rounded down.
struct Inverse {
  std::uint64_t digits = 0;
  int bits = 0;  ///< how many 5^i has
};

constexpr std::array<Inverse, 28> inversesOfFive = [] {
  std::array<Inverse, 28> inverses{};
  std::uint64_t power = 1;
  for (Inverse& inverse : inverses) {
    inverse.bits = static_cast<int>(std::bit_width(power));
    inverse.digits = static_cast<std::uint64_t>(((Wide{1} << (63 + inverse.bits)) - 1) / power);
    power *= 5;
  }
  return inverses;
}();

// The double nearest to digits / 10^power. A product with an inverse is faster than a quotient, but its upper
// 64 bits may be too small by less than 4 units.
// @param digits not 0
// @param power at least 1
// @return whether the nearest double could be decided: not near the middle between two doubles
bool nearestQuotient(std::uint64_t digits, std::size_t power, double& number) {
  if (power >= inversesOfFive.size()) {
    return false;
  }
  const Inverse& inverse = inversesOfFive[power];
  const int leadingZeros = std::countl_zero(digits);
  const auto product = static_cast<std::uint64_t>(Wide{digits << leadingZeros} * inverse.digits >> 64U);
  const auto isFull = static_cast<int>(product >> 63U);
  const std::uint64_t filled = product << (1 - isFull);
  constexpr unsigned unusedBits = 64 - std::numeric_limits<double>::digits;
  constexpr std::uint64_t middle = std::uint64_t{1} << (unusedBits - 1);
  const std::uint64_t rest = filled % (2 * middle);
  if (middle - rest < 4) {
    return false;
  }
  constexpr int bias = 1074;
  const int exponent =
      static_cast<int>(unusedBits) + isFull - leadingZeros - inverse.bits - static_cast<int>(power) + bias;
  const std::uint64_t bits =
      (static_cast<std::uint64_t>(exponent) << 52U) + (filled >> unusedBits) + rest / middle;
  std::memcpy(&number, &bits, sizeof(bits));
  return true;
}

// The double nearest to digits * 10^power. @return whether it could be decided
bool scale(std::uint64_t digits, std::ptrdiff_t power, double& number) {
  constexpr auto mostPower = static_cast<std::ptrdiff_t>(powersOfTen.size()) - 1;
  number = static_cast<double>(digits);
  if (power < 0 && digits != 0) {
    return nearestQuotient(digits, static_cast<std::size_t>(-power), number);
  }
  if (power < 0 || power > mostPower) {
    return digits == 0;
  }
  // Rounded only once if both factors are exact, or if one of them is 1.
  number *= powersOfTen[static_cast<std::size_t>(power)];
  return digits <= mostExact || power == 0;
}

// @return the end of the number; null when it could not be decided
const char* readDigitsAndExponent(const char* first, const char* last, double& value) {
  const char* at = first;
  const bool isNegative = at != last && *at == '-';
  at += isNegative ? 1 : 0;
  std::uint64_t digits = 0;
  const char* const whole = at;
  at = readDigits(at, last, digits);
  std::ptrdiff_t count = at - whole;
  std::ptrdiff_t power = 0;
  if (at != last && *at == '.') {
    const char* const fraction = at + 1;
    at = readDigits(fraction, last, digits);
    power = fraction - at;
    count -= power;
  }
  constexpr std::ptrdiff_t mostDigits = 19;  // the digits that always fit into 64 bits
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
      return nullptr;
    }
    power += isSmall ? -size : size;
    at = exponent;
  }
  double number = 0.0;
  if (count == 0 || count > mostDigits || (at != last && isDigit(*at)) || !scale(digits, power, number)) {
    return nullptr;
  }
  value = withSign(number, isNegative ? 1 : 0);
  return at;
}

}  // namespace

bool readUsual(const char* first, const char* last, double& value, const char*& end) {
  const char* const found = readDigitsAndExponent(first, last, value);
  end = found != nullptr ? found : end;
  return found != nullptr;
}

std::from_chars_result readLongDecimal(const char* first, const char* last, double& value) {
  const char* const end = readDigitsAndExponent(first, last, value);
  return end != nullptr ? std::from_chars_result{end, std::errc()} : readAny(first, last, value);
}

std::from_chars_result readLongDecimal(const char* first, const char* last, float& value) {
  double number = 0.0;
  const char* const end = readDigitsAndExponent(first, last, number);
  if (end == nullptr || !roundsLikeItsNumber(number, 0)) {
    return readAny(first, last, value);
  }
  value = static_cast<float>(number);
  return {end, std::errc()};
}

}  // namespace orvantis::toolkit::detail
