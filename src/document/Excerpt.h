#pragma once

#include <string>
#include <string_view>

#include "document/Finding.h"

namespace orvantis::toolkit {

/// The position of a byte in a text. A byte order mark at the beginning has no column.
Position positionOf(std::string_view text, std::size_t offset);

/// The line of the byte, made printable and cut to the width of a terminal, and below it a caret at the byte.
std::string excerptAt(std::string_view text, std::size_t offset);

}  // namespace orvantis::toolkit
