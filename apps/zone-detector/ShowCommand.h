#pragma once

#include <string>

namespace orvantis::app {

struct Console;

/// Prints what a zone document holds, as tables or as one JSON object.
int show(const std::string& path, bool json, const Console& console);

}  // namespace orvantis::app
