#pragma once

#include <string>

#include <boost/json/value.hpp>

namespace orvantis::toolkit {

/// The value as JSON that is easy to read: a value that fits on one line is on one line, and the text ends
/// with a line end. Numbers are written as by `toJson`.
std::string toPrettyJson(const boost::json::value& value);

}  // namespace orvantis::toolkit
