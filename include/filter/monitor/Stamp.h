#pragma once

#include <chrono>

namespace orvantis::filter::monitor {

/// When a frame was taken: nanoseconds since an epoch that the host chooses, the same for everything it feeds
/// in. Negative stamps are as good as positive ones. Nothing here reads a clock.
using Stamp = std::chrono::nanoseconds;

/// The time between two stamps.
using Duration = std::chrono::nanoseconds;

}  // namespace orvantis::filter::monitor
