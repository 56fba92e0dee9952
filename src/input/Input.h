#pragma once

#include <cstddef>
#include <istream>
#include <memory>
#include <string>

namespace orvantis::toolkit {

/// The name of the standard input in place of a file.
inline constexpr const char* standardInput = "-";

/// A stream of a file or a pipe that gives text as soon as it comes. It ends early when an Interrupt has a
/// signal.
/// @throws Failure with the path and the reason, also for a folder
std::unique_ptr<std::istream> openInput(const std::string& path);

/// The bytes of a file or of the standard input, at most `limit` of them.
/// @throws Failure with the path and the reason
std::string readInput(const std::string& path, std::size_t limit);

}  // namespace orvantis::toolkit
