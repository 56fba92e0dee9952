#include "monitor/ObjectIds.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace orvantis::filter::monitor {

void requireUniqueIds(const std::vector<TrackedObject>& objects) {
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
