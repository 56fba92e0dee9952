#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvantis::app {

/// The words of a line, parted by blanks.
std::vector<std::string_view> words(std::string_view line);
/// A whole number from 0 up. @throws std::runtime_error naming the key
std::uint64_t wholeNumber(std::string_view key, std::string_view text);
/// Whether a text is one number, "nan" and "inf" among them.
bool isNumber(std::string_view text);

}  // namespace orvantis::app
