#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvantis::toolkit {

/// The words of a line, separated by blanks.
std::vector<std::string_view> words(std::string_view line);
/// A whole number of at least 0. @throws std::runtime_error, with the key in its text
std::uint64_t wholeNumber(std::string_view key, std::string_view text);

}  // namespace orvantis::toolkit
