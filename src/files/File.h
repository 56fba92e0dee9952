#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orvantis::toolkit {

/// All bytes of a file.
/// @param room its memory is used for the result
/// @throws Failure with the path and the reason, also when the path is not that of a regular file, or
///   the file does not fit into the memory
std::vector<std::byte> readBytes(const std::string& path, std::vector<std::byte> room = {});

/// In bytes. @throws Failure when the path cannot be opened for reading or is not that of a regular file
std::size_t fileSize(const std::string& path);

}  // namespace orvantis::toolkit
