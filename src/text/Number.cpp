#include "text/Number.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <version>

#ifndef __cpp_lib_to_chars
#include "text/Decimal.h"
#include "text/PlainNumber.h"
#endif

namespace orvantis::toolkit {
namespace {

// Long enough for any double in fixed notation with a few decimals.
using Buffer = std::array<char, 400>;

}  // namespace

#ifdef __cpp_lib_to_chars

std::from_chars_result readNumber(const char* first, const char* last, double& value) {
  return std::from_chars(first, last, value);
}

std::from_chars_result readNumber(const char* first, const char* last, float& value) {
  return std::from_chars(first, last, value);
}

std::string toText(double value) {
  Buffer buffer;
  return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

std::string toDigits(double value, int digits) {
  Buffer buffer;
  return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       std::chars_format::general, digits)
                             .ptr};
}

std::string toFixed(double value, int decimals) {
  Buffer buffer;
  std::string text(buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                                std::chars_format::fixed, decimals)
                                      .ptr);
  if (text[0] == '-' && text.find_first_not_of("-0.") == std::string::npos) {
    text.erase(0, 1);
  }
  return text;
}

#else

std::from_chars_result readNumber(const char* first, const char* last, double& value) {
  const char* end = first;
  if (detail::readUsual(first, last, value, end)) {
    return {end, std::errc()};
  }
  return plain::readNumber(first, last, value, std::strtod);
}

std::from_chars_result readNumber(const char* first, const char* last, float& value) {
  return plain::readNumber(first, last, value, std::strtof);
}

std::string toText(double value) {
  return plain::shortest(value);
}

std::string toDigits(double value, int digits) {
  Buffer buffer;
  const int size = std::snprintf(buffer.data(), buffer.size(), "%.*g", digits, value);
  return {buffer.data(), static_cast<std::size_t>(size)};
}

std::string toFixed(double value, int decimals) {
  Buffer buffer;
  const int size = std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
  std::string text(buffer.data(), static_cast<std::size_t>(size));
  if (text[0] == '-' && text.find_first_not_of("-0.") == std::string::npos) {
    text.erase(0, 1);
  }
  return text;
}

#endif

std::string toText(double value, int decimals) {
  // Hundreds of digits are not readable, and a larger double has hardly any decimals.
  constexpr double readable = 1e15;
  if (std::abs(value) >= readable && std::isfinite(value)) {
    return toText(value);
  }
  std::string text = toFixed(value, decimals);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
      text.pop_back();
    }
  }
  return text;
}

}  // namespace orvantis::toolkit
