#pragma once

#include <string>

#include "document/Configuration.h"

namespace orvantis::app {

/// Checks and loads a zone document.
/// @throws Failure with the path and what is wrong with the document
toolkit::Configuration readConfiguration(const std::string& path);

}  // namespace orvantis::app
