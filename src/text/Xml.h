#pragma once

#include <string>
#include <string_view>

namespace orvantis::toolkit {

/// The text for an element or an attribute of XML: markup is escaped, what is not UTF-8 and control
/// characters, which XML forbids, are written out.
std::string xmlEscaped(std::string_view text);

}  // namespace orvantis::toolkit
