#pragma once

#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

namespace orvantis::toolkit {

/// The bytes of a file.
/// @param limit the most bytes that are read
/// @throws Failure with the path and the reason
std::string readFile(const std::string& path, std::size_t limit);

/// The file, open for reading. @throws Failure with the path and the reason, also for a folder
std::ifstream openFile(const std::string& path);

/// All bytes of a file.
/// @param room its memory is used for the result
/// @throws Failure with the path and the reason, also when the path is not that of a regular file
std::vector<std::byte> readBytes(const std::string& path, std::vector<std::byte> room = {});

/// In bytes. @throws Failure when the path cannot be opened for reading or is not that of a regular file
std::size_t fileSize(const std::string& path);

}  // namespace orvantis::toolkit
