#pragma once

#include <string>
#include <string_view>

namespace orvantis::toolkit {

/// A to Z become a to z, every other byte stays as it is. Not std::tolower, which depends on the process
/// locale: a keyword of a file must mean the same on every system.
constexpr char lowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::string lowerCase(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    c = lowerCase(c);
  }
  return result;
}

}  // namespace orvantis::toolkit
