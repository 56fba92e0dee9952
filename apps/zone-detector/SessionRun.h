#pragma once

namespace orvantis::app {

struct Configuration;
struct Console;
struct RunOptions;

/// Prints what happens in a recording as it happens, and a summary at the end.
/// @throws Failure at the first frame or row that cannot be read; what was printed before stands, tables and
///   picture are not written
int runSession(const Configuration& configuration, const RunOptions& options, const Console& console);

}  // namespace orvantis::app
