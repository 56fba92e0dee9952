#pragma once

#include <chrono>

namespace orvantis::filter::monitor {

/// When a frame was taken: nanoseconds since an epoch that the host chooses, the same for all its frames. A
/// stamp may be negative. The library reads no clock.
using Stamp = std::chrono::nanoseconds;

/// The time between two stamps.
using Duration = std::chrono::nanoseconds;

}  // namespace orvantis::filter::monitor
