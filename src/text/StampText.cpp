#include "text/StampText.h"

#include <algorithm>
#include <cstdint>
#include <system_error>

#include "text/Number.h"

namespace orvantis::toolkit {
namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// A decimal number as it is written: its digits from the first one that is not 0, and how many of them are
// before the point.
struct Decimal {
  std::string digits;
  std::int64_t whole = 0;
  const char* end = nullptr;  // null: not a number
};

Decimal readDecimal(const char* at, const char* last) {
  Decimal decimal;
  bool hasDigits = false;
  bool isFraction = false;
  for (; at != last && (isDigit(*at) || (*at == '.' && !isFraction)); ++at) {
    if (*at == '.') {
      isFraction = true;
      continue;
    }
    hasDigits = true;
    const bool isLeadingZero = *at == '0' && decimal.digits.empty();
    decimal.digits += isLeadingZero ? "" : std::string(1, *at);
    if (isFraction) {
      decimal.whole -= isLeadingZero ? 1 : 0;
    } else {
      decimal.whole += isLeadingZero ? 0 : 1;
    }
  }
  if (!hasDigits) {
    return decimal;
  }
  decimal.end = at;
  if (at == last || (*at != 'e' && *at != 'E')) {
    return decimal;
  }
  ++at;
  const bool isNegative = at != last && *at == '-';
  at += at != last && (*at == '-' || *at == '+') ? 1 : 0;
  std::int64_t exponent = 0;
  for (; at != last && isDigit(*at); ++at) {
    constexpr std::int64_t most = 1'000'000'000'000;  // beyond any number of digits
    exponent = std::min(10 * exponent + (*at - '0'), most);
    decimal.end = at + 1;
  }
  decimal.whole += isNegative ? -exponent : exponent;
  return decimal;
}

constexpr std::int64_t second = 1'000'000'000;
constexpr std::int64_t limit = 4'600'000'000 * second;

}  // namespace

std::from_chars_result readSeconds(const char* first, const char* last, std::chrono::nanoseconds& value) {
  const bool isNegative = first != last && *first == '-';
  const Decimal decimal = readDecimal(isNegative ? first + 1 : first, last);
  if (decimal.end == nullptr) {
    return {first, std::errc::invalid_argument};
  }
  const std::int64_t numDigits = decimal.digits.empty() ? 0 : decimal.whole + 9;  // of the nanoseconds
  constexpr std::int64_t mostDigits = 19;
  if (numDigits > mostDigits) {
    return {decimal.end, std::errc::result_out_of_range};
  }
  const auto digit = [&](std::int64_t i) {
    const bool isWritten = i >= 0 && i < static_cast<std::int64_t>(decimal.digits.size());
    return isWritten ? decimal.digits[static_cast<std::size_t>(i)] - '0' : 0;
  };
  std::uint64_t count = 0;
  for (std::int64_t i = 0; i < numDigits; ++i) {
    count = 10 * count + static_cast<std::uint64_t>(digit(i));
  }
  if (count >= static_cast<std::uint64_t>(limit)) {
    return {decimal.end, std::errc::result_out_of_range};
  }
  const auto rounded = static_cast<std::int64_t>(count) + (digit(numDigits) >= 5 ? 1 : 0);
  value = std::chrono::nanoseconds(isNegative ? -rounded : rounded);
  return {decimal.end, std::errc()};
}

double toSeconds(std::chrono::nanoseconds time) {
  const std::string text = toText(time);
  double seconds = 0.0;
  readNumber(text.data(), text.data() + text.size(), seconds);
  return seconds;
}

std::string toText(std::chrono::nanoseconds time) {
  const bool isNegative = time.count() < 0;
  const auto count = static_cast<std::uint64_t>(time.count());
  const std::uint64_t size = isNegative ? 0 - count : count;
  constexpr auto unit = static_cast<std::uint64_t>(second);
  std::string text = (isNegative ? "-" : "") + std::to_string(size / unit);
  if (size % unit != 0) {
    const std::string fraction = std::to_string(unit + size % unit).substr(1);
    text += "." + fraction.substr(0, fraction.find_last_not_of('0') + 1);
  }
  return text;
}

std::string toMilliseconds(std::chrono::nanoseconds time) {
  return toFixed(toSeconds(time), 3);
}

}  // namespace orvantis::toolkit
