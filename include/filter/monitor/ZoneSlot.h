#pragma once

#include <cstddef>
#include <string>

namespace orvantis::filter::monitor {

/// The number of zone slots of a detector. Where something is kept for each slot, the index is
/// PointClassifier::zoneBit(field, zone).
constexpr std::size_t NUM_ZONE_SLOTS = 24;

/// A zone of an evaluation field: where it stands in the detector, and what it is called there.
struct ZoneSlot {
  int field = 0;          ///< 0 to 7
  int zone = 0;           ///< 0 to 2
  std::string fieldName;  ///< may be empty
  std::string zoneName;   ///< may be empty
};

}  // namespace orvantis::filter::monitor
