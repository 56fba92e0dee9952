#pragma once

#include "session/SessionOptions.h"

namespace CLI {
class App;
}

namespace orvantis::app {

/// Adds the options for following tracks and for the field that drives the outputs.
/// @param options must live as long as the command
void addSessionOptions(CLI::App& command, toolkit::SessionOptions& options);

}  // namespace orvantis::app
