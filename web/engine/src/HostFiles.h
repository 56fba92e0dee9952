#pragma once

#include <string_view>

#include "RecordingFiles.h"

namespace orvantis::engine {

// Files of the page: an object with the name of each, the number by which the host knows it, and its size.
// @throws std::invalid_argument when the text is something else

NamedSource hostFileOf(std::string_view json);
/// @param json an object with clouds, stamps and tracks
RecordingFiles hostFilesOf(std::string_view json);

}  // namespace orvantis::engine
