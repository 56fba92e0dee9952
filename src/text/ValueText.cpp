#include "text/ValueText.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <ios>
#include <limits>
#include <locale>
#include <sstream>
#include <string_view>
#include <system_error>

#include <boost/property_tree/stream_translator.hpp>

#include "text/Number.h"

namespace orvantis::toolkit {
namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// The text without the blanks around it and the plus in front, which a stream accepts but from_chars does
// not. Empty when it does not begin like a decimal number.
std::string_view plainNumber(std::string_view text) {
  constexpr std::string_view blanks = " \t\n\v\f\r";
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  text = text.substr(0, text.find_last_not_of(blanks) + 1);
  std::string_view number = text;
  if (!number.empty() && (number.front() == '+' || number.front() == '-')) {
    number.remove_prefix(1);
    if (text.front() == '+') {
      text = number;
    }
  }
  const bool isNumber = !number.empty() && (isDigit(number.front()) || number.front() == '.');
  return isNumber ? text : std::string_view();
}

// Whether a decimal number that is out of range is too small rather than too large.
bool isSmall(std::string_view number) {
  const std::size_t e = std::min(number.find_first_of("eE"), number.size());
  const std::string_view digits = number.substr(0, e);
  const auto point = static_cast<std::ptrdiff_t>(std::min(digits.find('.'), digits.size()));
  const auto first = static_cast<std::ptrdiff_t>(digits.find_first_of("123456789"));
  std::string_view power = number.substr(std::min(e + 1, number.size()));
  const bool isNegative = !power.empty() && power.front() == '-';
  power.remove_prefix(!power.empty() && !isDigit(power.front()) ? 1 : 0);
  long long exponent = 0;
  if (std::from_chars(power.data(), power.data() + power.size(), exponent).ec ==
      std::errc::result_out_of_range) {
    return isNegative;
  }
  return (isNegative ? -exponent : exponent) < first - point;
}

}  // namespace

template <>
boost::optional<double> ValueText<double>::get_value(const std::string& text) const {
  const std::string_view number = plainNumber(text);
  const char* const end = number.data() + number.size();
  double value = 0.0;
  const auto [last, error] = readNumber(number.data(), end, value);
  if (error == std::errc::result_out_of_range && last == end && isSmall(number)) {
    return number.front() == '-' ? -0.0 : 0.0;
  }
  return error == std::errc() && last == end ? boost::optional<double>(value) : boost::none;
}

template <>
boost::optional<int> ValueText<int>::get_value(const std::string& text) const {
  const std::string_view number = plainNumber(text);
  const char* const end = number.data() + number.size();
  int value = 0;
  const auto [last, error] = std::from_chars(number.data(), end, value);
  return error == std::errc() && last == end ? boost::optional<int>(value) : boost::none;
}

template <>
boost::optional<bool> ValueText<bool>::get_value(const std::string& text) const {
  if (text == "true" || text == "false") {
    return text == "true";
  }
  using Traits = std::char_traits<char>;
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  // Lets std::bad_alloc through. Otherwise it would look like a text that is not a value, which silently
  // gives the default.
  in.exceptions(std::ios::badbit);
  bool value = false;
  boost::property_tree::customize_stream<char, Traits, bool>::extract(in, value);
  const bool isWhole = !in.fail() && in.get() == Traits::eof();
  return isWhole ? boost::optional<bool>(value) : boost::none;
}

template <>
boost::optional<std::string> ValueText<double>::put_value(double value) const {
  return toDigits(value, std::numeric_limits<double>::max_digits10);
}

template <>
boost::optional<std::string> ValueText<int>::put_value(int value) const {
  return std::to_string(value);
}

template <>
boost::optional<std::string> ValueText<bool>::put_value(bool value) const {
  return std::string(value ? "true" : "false");
}

}  // namespace orvantis::toolkit
