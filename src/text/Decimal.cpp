#include "text/Decimal.h"

#include <cmath>
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

constexpr std::size_t mostNearbyPower = 18;

// The double nearest to digits / 10^power, where `near` is the quotient of the two after both were rounded.
// `near` is off by less than 2 units of its last place. So near * 10^power and the digits, as whole numbers,
// differ by less than 2 * 10^18 times such a unit. The difference fits into 64 bits, although the numbers
// themselves do not.
// @param power 1 to `mostNearbyPower`
// @return whether the nearest double could be decided
bool nearestQuotient(std::uint64_t digits, std::size_t power, double near, double& number) {
  constexpr unsigned fractionBits = 52;
  constexpr std::uint64_t leading = std::uint64_t{1} << fractionBits;
  std::uint64_t bits = 0;
  std::memcpy(&bits, &near, sizeof(bits));
  const std::uint64_t fraction = (bits & (leading - 1)) | leading;
  const std::uint64_t exponent = bits >> fractionBits;
  constexpr std::uint64_t whole = 1075;  // near = fraction * 2^(exponent - whole)
  // Next to a power of two, the doubles on one side are closer to each other.
  if (fraction <= leading + 2 || fraction >= 2 * leading - 2 || exponent > whole) {
    return false;
  }
  const std::uint64_t shift = whole - exponent;
  const std::uint64_t divisor = wholePowersOfTen[power];
  const std::uint64_t scaled = shift < 64 ? digits << shift : 0;
  const auto difference = static_cast<std::int64_t>(scaled - fraction * divisor);
  // Without branches, because a processor cannot predict the sign of the error.
  const auto sign = static_cast<std::uint64_t>(difference >> 63U);
  const std::uint64_t twice = 2 * ((static_cast<std::uint64_t>(difference) ^ sign) - sign);
  if (twice == divisor || twice > 3 * divisor) {
    return false;  // halfway between two doubles, or two units off
  }
  const std::uint64_t step = twice > divisor ? 1 : 0;
  bits += (step ^ sign) - sign;
  std::memcpy(&number, &bits, sizeof(number));
  return true;
}

// The double nearest to digits * 10^power. @return whether it could be decided
bool scale(std::uint64_t digits, std::ptrdiff_t power, double& number) {
  constexpr auto mostPower = static_cast<std::ptrdiff_t>(powersOfTen.size()) - 1;
  if (power < -mostPower || power > mostPower) {
    return false;
  }
  number = static_cast<double>(digits);
  if (power >= 0) {
    // Rounded only once if both factors are exact, or if one of them is 1.
    number *= powersOfTen[static_cast<std::size_t>(power)];
    return digits <= mostExact || power == 0;
  }
  const auto size = static_cast<std::size_t>(-power);
  number /= powersOfTen[size];
  return digits <= mostExact || (size <= mostNearbyPower && nearestQuotient(digits, size, number, number));
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
