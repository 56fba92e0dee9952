#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace orvantis::toolkit {

/// The words of a line, separated by blanks.
std::vector<std::string_view> words(std::string_view line);
/// How many bytes of a file are still to be read; 0 at its end, where the stream has no position any more.
std::uint64_t bytesLeft(std::istream& in, std::uint64_t fileSize);
/// A whole number of at least 0. @throws std::runtime_error, with the key in its text
std::uint64_t wholeNumber(std::string_view key, std::string_view text);
/// Whether a text is one number; "nan" and "inf" are numbers too.
bool isNumber(std::string_view text);

}  // namespace orvantis::toolkit
