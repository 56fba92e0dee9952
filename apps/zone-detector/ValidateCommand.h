#pragma once

#include <string>
#include <vector>

namespace orvantis::app {

struct Console;

/// Checks zone documents: the library's fixed check first, then what it leaves out, each with path and line.
/// @param strict whether findings beyond the fixed check count as faults
/// @return 0 when every document is good, else 1
int validate(const std::vector<std::string>& paths, bool strict, const Console& console);

}  // namespace orvantis::app
