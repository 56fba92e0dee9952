#pragma once

#include "session/SessionOptions.h"

namespace CLI {
class App;
}

namespace orvantis::app {

/// Adds the options that say how tracks are followed and which field drives the outputs.
/// @param options live as long as the command
void addSessionOptions(CLI::App& command, toolkit::SessionOptions& options);

}  // namespace orvantis::app
