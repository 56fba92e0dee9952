#pragma once

#include <string>

namespace orvantis::app {

/// Writes a file whole or not at all: a new file in the same folder takes the place of the old one only when
/// every byte is on the disk. A path that names something else than a file, such as /dev/stdout, is written
/// to directly.
/// @throws Failure with the path and the reason; the old file is then as it was and nothing else is left
/// behind
void writeWhole(const std::string& path, const std::string& content);

}  // namespace orvantis::app
