#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace orvantis::toolkit {

/// The words of a line, parted by blanks.
std::vector<std::string_view> words(std::string_view line);
/// The bytes of a file that are still to be read; none at its end, where a stream tells no position any more.
std::uint64_t bytesLeft(std::istream& in, std::uint64_t fileSize);
/// A whole number from 0 up. @throws std::runtime_error naming the key
std::uint64_t wholeNumber(std::string_view key, std::string_view text);
/// Whether a text is one number, "nan" and "inf" among them.
bool isNumber(std::string_view text);

}  // namespace orvantis::toolkit
