#pragma once

#include <cstdint>
#include <string>

namespace orvantis::app {

// Whether a file holds what its header promises, so that it is safe and right to hand it to Open3D. Each
// throws std::runtime_error with the reason when it does not.

/// @return the number of points; an empty frame is legal
std::uint64_t checkPcd(const std::string& path, std::uint64_t size);
void checkPly(const std::string& path, std::uint64_t size);
void checkXyz(const std::string& path);

}  // namespace orvantis::app
