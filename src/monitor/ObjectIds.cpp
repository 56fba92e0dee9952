#include "monitor/ObjectIds.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace orvantis::filter::monitor {

void requireUniqueIds(const std::vector<TrackedObject>& objects) {
  // Most trackers give ids in ascending order. Then there is nothing to sort.
  std::int32_t last = -1;
  const bool isAscending = std::all_of(objects.begin(), objects.end(), [&](const TrackedObject& object) {
    return std::exchange(last, object.id) < object.id;
  });
  if (isAscending) {
    return;
  }
  std::vector<std::int32_t> ids;
  ids.reserve(objects.size());
  for (const TrackedObject& object : objects) {
    if (object.id >= 0) {
      ids.push_back(object.id);
    }
  }
  std::sort(ids.begin(), ids.end());
  if (const auto repeated = std::adjacent_find(ids.begin(), ids.end()); repeated != ids.end()) {
    throw std::invalid_argument("Two objects of one frame have the id " + std::to_string(*repeated));
  }
}

}  // namespace orvantis::filter::monitor
