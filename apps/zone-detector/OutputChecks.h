#pragma once

#include <string>

#include "input/Recording.h"

namespace orvantis::app {

// Asked before frames are read, so that nobody waits for a picture that cannot be written.

/// A picture has a name for one, and does not overwrite a file that it is drawn from, also not by another
/// name of that file.
/// @param document,recording the files that it is drawn from
/// @throws Failure
void checkPicture(const std::string& path, const std::string& document, const toolkit::Recording& recording);

}  // namespace orvantis::app
