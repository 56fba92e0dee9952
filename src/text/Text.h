#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orvantis::toolkit {

/// The text with U+FFFD for every byte that is not UTF-8. Paths and class names may have such bytes, but JSON
/// and SVG must be UTF-8.
std::string toUtf8(std::string_view text);

/// How many bytes at the beginning of the text are UTF-8.
std::size_t validUtf8(std::string_view text);

/// The text as UTF-8 with control characters written out (\x1b), so that a name from a file cannot steer a
/// terminal.
std::string printable(std::string_view raw);

/// The columns a terminal needs for the text: its characters, not its bytes.
std::size_t displayWidth(std::string_view text);

/// At most that many whole characters of the text; "…" shows that some are left out.
std::string shortened(const std::string& text, std::size_t characters);

/// The head and as much of the end of the text as fit into that many columns; "…" shows that some is left
/// out.
std::string endOf(std::string_view head, std::string_view text, std::size_t columns);

/// The system's message for an error number.
std::string errorText(int number);

/// The text in bold for a terminal, if it is to be coloured.
std::string bold(const std::string& text, bool isColoured);

/// "1 point", "2 points".
std::string counted(std::uint64_t count, std::string_view singular);

}  // namespace orvantis::toolkit
