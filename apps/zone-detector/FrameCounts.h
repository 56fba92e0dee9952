#pragma once

namespace orvantis::toolkit {
struct Configuration;
}

namespace orvantis::app {

struct Console;
struct RunOptions;

/// Prints, for each frame, how many points each zone holds outside every exclusion zone.
/// @throws Failure at the first frame that cannot be read; the frames before were printed
int countFrames(const toolkit::Configuration& configuration, const RunOptions& options,
                const Console& console);

}  // namespace orvantis::app
