#include "text/Words.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <system_error>

namespace orvantis::toolkit {

std::vector<std::string_view> words(std::string_view line) {
  static constexpr std::string_view blanks = " \t\r\n";
  std::vector<std::string_view> result;
  for (std::size_t at = line.find_first_not_of(blanks); at != std::string_view::npos;) {
    const std::size_t end = std::min(line.find_first_of(blanks, at), line.size());
    result.push_back(line.substr(at, end - at));
    at = line.find_first_not_of(blanks, end);
  }
  return result;
}

std::uint64_t wholeNumber(std::string_view key, std::string_view text) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw std::runtime_error(std::string(key) + " is not a whole number: " + std::string(text));
  }
  return value;
}

}  // namespace orvantis::toolkit
