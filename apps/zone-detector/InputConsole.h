#pragma once

#include "input/Recording.h"

namespace orvantis::app {

struct Console;

/// Prints what is told while a recording is opened on the error stream, which must outlive it.
toolkit::OpeningWarnings warningsTo(const Console& console);

/// 128 plus the signal that ended the work; 4 when a recording could not be read to its end; else 0.
int exitCodeOf(const toolkit::FrameSource& input);

}  // namespace orvantis::app
