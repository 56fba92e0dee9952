#pragma once

#include <string>

#include "Recording.h"

namespace CLI {
class App;
}

namespace orvantis::app {

/// Adds the options that say where frames and tracked objects come from.
/// @param recording lives as long as the command
void addRecordingOptions(CLI::App& command, Recording& recording);

/// Whether there is a recording at all, and no more than one input is the standard input.
/// @throws CLI::ParseError when not
void checkRecording(const Recording& recording, const std::string& document);

}  // namespace orvantis::app
