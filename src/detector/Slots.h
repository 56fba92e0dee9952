#pragma once

#include <cstddef>
#include <string>

namespace orvantis::filter::detection {

/// An evaluation field's index as a position.
/// @throws std::out_of_range outside 0..7
std::size_t checkedFieldSlot(int field);

/// A zone's index as a position in its field.
/// @throws std::out_of_range outside 0..2
std::size_t checkedZoneSlot(int zone);

/// The name that a field or zone without a name gets, such as "Zone2" for kind "Zone" and slot 2.
std::string defaultName(const char* kind, int slot);

}  // namespace orvantis::filter::detection
