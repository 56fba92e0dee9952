#pragma once

#include <string>
#include <string_view>

#include "document/Finding.h"

namespace orvantis::toolkit {

/// Where a byte of a text is. The text may begin with a byte order mark, which has no column.
Position positionOf(std::string_view text, std::size_t offset);

/// The line that the byte is in, made printable and cut to what fits a terminal, and beneath it a caret at
/// the byte.
std::string excerptAt(std::string_view text, std::size_t offset);

}  // namespace orvantis::toolkit
