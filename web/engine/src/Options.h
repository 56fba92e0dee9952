#pragma once

#include <string_view>

#include "RecordingFiles.h"
#include "session/SessionOptions.h"

namespace orvantis::engine {

// Options of a page, as JSON objects whose keys types.ts names. A key of another name or type is refused.
// @throws std::invalid_argument with what is allowed

RecordingOptions recordingOptionsOf(std::string_view json);
toolkit::SessionOptions sessionOptionsOf(std::string_view json);

}  // namespace orvantis::engine
