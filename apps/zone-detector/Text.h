#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orvantis::app {

/// The shortest decimal text that reads back as the same double.
std::string toText(double value);

/// The value with at most that many decimals, without trailing zeros and without "-0".
std::string toText(double value, int decimals);

/// The value with exactly that many decimals, for columns of figures.
std::string toFixed(double value, int decimals);

/// The text with U+FFFD for every byte that is not UTF-8, as a path or a class may have: JSON and SVG must
/// be.
std::string toUtf8(std::string_view text);

/// The text as UTF-8 with control characters written out (\x1b), so that a name from a file cannot steer a
/// terminal.
std::string printable(std::string_view raw);

/// The columns a terminal needs for the text: its characters, not its bytes.
std::size_t displayWidth(std::string_view text);

/// The system's words for an error number.
std::string errorText(int number);

/// "1 point", "2 points".
std::string counted(std::uint64_t count, std::string_view singular);

}  // namespace orvantis::app
