#pragma once

#include <vector>

#include <filter/monitor/TrackedObject.h>

namespace orvantis::filter::monitor {

/// @throws std::invalid_argument, naming the id, when two objects of a frame have the same id, 0 or above
void requireUniqueIds(const std::vector<TrackedObject>& objects);

}  // namespace orvantis::filter::monitor
