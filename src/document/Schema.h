#pragma once

#include <boost/json/object.hpp>

namespace orvantis::toolkit {

/// A JSON Schema (2020-12) of zone documents, made from the table of keys: what it refuses has a finding.
/// What it cannot say, such as crossing edges or repeated names, it leaves to the findings. Editors complete
/// and explain with it.
boost::json::object schema();

}  // namespace orvantis::toolkit
