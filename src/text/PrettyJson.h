#pragma once

#include <string>

#include <boost/json/value.hpp>

namespace orvantis::toolkit {

/// The value as JSON for people: what fits a line stands on one, and the text ends with a line end. Numbers
/// as in `toJson`.
std::string toPrettyJson(const boost::json::value& value);

}  // namespace orvantis::toolkit
