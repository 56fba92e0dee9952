#include "settings/ValueText.h"

#include <array>
#include <charconv>
#include <ios>
#include <limits>
#include <locale>
#include <sstream>
#include <string_view>
#include <system_error>

#include <boost/property_tree/stream_translator.hpp>

namespace orvantis::detail {
namespace {

template <typename T>
boost::optional<T> readByStream(const std::string& text) {
  using Traits = std::char_traits<char>;
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  // Out of memory must not pass for "no number", which would quietly give the default.
  in.exceptions(std::ios::badbit);
  T value{};
  boost::property_tree::customize_stream<char, Traits, T>::extract(in, value);
  const bool isWhole = !in.fail() && in.get() == Traits::eof();
  return isWhole ? boost::optional<T>(value) : boost::none;
}

// A text that begins like this and that from_chars takes to its end is read alike by a stream. All others,
// such as " 1", "+1", "inf" or one beyond the range, are the stream's to judge.
bool startsPlain(std::string_view text) {
  const std::string_view unsignedText = text.substr(text.starts_with('-') ? 1 : 0);
  return !unsignedText.empty() && unsignedText.front() >= '0' && unsignedText.front() <= '9';
}

template <typename T>
boost::optional<T> readNumber(const std::string& text) {
  if (startsPlain(text)) {
    T value{};
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, value);
    if (error == std::errc() && last == end) {
      return value;
    }
  }
  return readByStream<T>(text);
}

}  // namespace

template <>
boost::optional<double> ValueText<double>::get_value(const std::string& text) const {
  return readNumber<double>(text);
}

template <>
boost::optional<int> ValueText<int>::get_value(const std::string& text) const {
  return readNumber<int>(text);
}

template <>
boost::optional<bool> ValueText<bool>::get_value(const std::string& text) const {
  if (text == "true" || text == "false") {
    return text == "true";
  }
  return readByStream<bool>(text);
}

template <>
boost::optional<std::string> ValueText<double>::put_value(double value) const {
  // As many digits as bring back every double.
  constexpr int digits = std::numeric_limits<double>::max_digits10;
  std::array<char, digits + 16> text;  // sign, point, exponent
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, digits);
  return std::string(text.data(), end);
}

template <>
boost::optional<std::string> ValueText<int>::put_value(int value) const {
  return std::to_string(value);
}

template <>
boost::optional<std::string> ValueText<bool>::put_value(bool value) const {
  return std::string(value ? "true" : "false");
}

}  // namespace orvantis::detail
