#pragma once

#include <cstddef>
#include <string>

namespace orvantis::filter::monitor {

/// The zone slots of a detector: three in each of the eight evaluation fields.
constexpr std::size_t NUM_ZONE_SLOTS = 24;

/// The index of a slot in arrays with an element for each slot. Equal to PointClassifier::zoneBit. The
/// arguments are not checked. Throws nothing.
constexpr std::size_t zoneSlotIndex(int field, int zone) {
  return 3 * static_cast<std::size_t>(field) + static_cast<std::size_t>(zone);
}

/// A zone of an evaluation field: its place in the detector, and its names there.
struct ZoneSlot {
  int field = 0;          ///< 0 to 7
  int zone = 0;           ///< 0 to 2
  std::string fieldName;  ///< may be empty
  std::string zoneName;   ///< may be empty
};

}  // namespace orvantis::filter::monitor
