#pragma once

#include <boost/json/object.hpp>

namespace orvantis::toolkit {

/// A JSON Schema (2020-12) of zone documents, made from the table of keys. Editors use it to complete and
/// explain keys. Everything that it refuses is also a finding of `check`. It cannot express everything:
/// crossing edges and repeated names are findings only.
boost::json::object schema();

}  // namespace orvantis::toolkit
