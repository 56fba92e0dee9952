#pragma once

namespace orvantis::toolkit {
struct Configuration;
}

namespace orvantis::app {

struct Console;
struct RunOptions;

/// Prints what happens in a recording as it happens, and a summary at the end.
/// @throws Failure at the first frame or row that cannot be read; what happened before was printed, but
///   tables and picture are not written
int runSession(const toolkit::Configuration& configuration, const RunOptions& options,
               const Console& console);

}  // namespace orvantis::app
