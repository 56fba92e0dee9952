#pragma once

#include <string>

#include "input/Recording.h"

namespace CLI {
class App;
}

namespace orvantis::app {

/// Adds the options for where frames come from and how they are read.
/// @param recording must live as long as the command
void addFrameOptions(CLI::App& command, toolkit::Recording& recording);

/// Adds these options, and those for stamps and tracked objects.
/// @param recording must live as long as the command
void addRecordingOptions(CLI::App& command, toolkit::Recording& recording);

/// @throws CLI::ParseError when more than one input is the standard input
void checkStandardInput(const toolkit::Recording& recording, const std::string& document);

/// @throws CLI::ParseError when there is no recording, or when more than one input is the standard input
void checkRecording(const toolkit::Recording& recording, const std::string& document);

}  // namespace orvantis::app
