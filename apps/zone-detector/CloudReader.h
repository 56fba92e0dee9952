#pragma once

#include <array>
#include <string>
#include <vector>

#include "input/FrameInput.h"

namespace orvantis::app {

/// The points of one frame, in memory of their own; a coordinate that is not finite means no return.
using Cloud = std::vector<std::array<double, 3>>;

toolkit::Points viewOf(const Cloud& cloud);

Cloud copyOf(const toolkit::Points& points);

/// The points of a file that is one frame, or of the first frame of a recording.
/// @throws Failure with the path, the place and the reason
Cloud readCloud(const std::string& path, const toolkit::FrameOptions& options = {});

}  // namespace orvantis::app
