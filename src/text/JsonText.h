#pragma once

#include <string>
#include <string_view>

#include <boost/json/value.hpp>

namespace orvantis::toolkit {

/// The value as JSON on one line. Numbers have the shortest text that reads back as the same number. A number
/// that is not finite becomes null, because JSON has no such numbers.
std::string toJson(const boost::json::value& value);

/// The text as a JSON string with its quotes.
std::string jsonQuoted(std::string_view text);

}  // namespace orvantis::toolkit
