#pragma once

#include <cstddef>
#include <istream>
#include <memory>
#include <string>

namespace orvantis::app {

/// How a user names the standard input in place of a file.
inline constexpr const char* standardInput = "-";

/// A text to be read as it comes, from a file or a pipe. It ends early when an Interrupt has a signal.
/// @throws Failure with the path and the reason, also for a folder
std::unique_ptr<std::istream> openInput(const std::string& path);

/// The bytes of a file or of the standard input, no more than `limit`.
/// @throws Failure with the path and the reason
std::string readInput(const std::string& path, std::size_t limit);

}  // namespace orvantis::app
