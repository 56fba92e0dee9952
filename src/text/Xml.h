#pragma once

#include <string>
#include <string_view>

namespace orvantis::toolkit {

/// The text for an element or an attribute of XML. Markup is escaped. Control characters and bytes that are
/// not UTF-8, which XML forbids, are written as in `printable`.
std::string xmlEscaped(std::string_view text);

}  // namespace orvantis::toolkit
