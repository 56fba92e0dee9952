#pragma once

#include <string>
#include <string_view>

#include "text/Text.h"

namespace orvantis::toolkit {

/// A text from a file, for a message: its first 40 bytes in quotation marks, printable on a terminal.
inline std::string quoted(std::string_view text) {
  constexpr std::size_t most = 40;
  return "\"" + printable(text.substr(0, most)) + (text.size() > most ? "..." : "") + "\"";
}

}  // namespace orvantis::toolkit
