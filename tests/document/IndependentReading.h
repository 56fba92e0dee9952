#pragma once

#include <string>

#include <boost/json/value.hpp>

#include "document/Configuration.h"

namespace orvantis::toolkit::testing {

/// What a configuration holds, a line for each thing: options, zones with their geometry, counter lines.
std::string contentOf(const Configuration& configuration);

/// The same, read from the document alone by the words of its description.
/// @throws std::runtime_error when the document does not say what it has to
std::string contentOf(const boost::json::value& document);

}  // namespace orvantis::toolkit::testing
