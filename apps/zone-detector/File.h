#pragma once

#include <string>

namespace orvantis::app {

/// The bytes of a file.
/// @param limit no more than this many are read
/// @throws Failure with the path and the reason
std::string readFile(const std::string& path, std::size_t limit);

/// @throws Failure when the path cannot be opened for reading or is not a file with bytes to read
std::size_t fileSize(const std::string& path);

}  // namespace orvantis::app
