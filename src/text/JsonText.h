#pragma once

#include <string>
#include <string_view>

#include <boost/json/value.hpp>

namespace orvantis::toolkit {

/// The value as JSON on one line, numbers as short as they can be and still read back the same; a number that
/// is not finite, which JSON does not know, becomes null.
std::string toJson(const boost::json::value& value);

/// The text as a JSON string with its quotes.
std::string jsonQuoted(std::string_view text);

}  // namespace orvantis::toolkit
