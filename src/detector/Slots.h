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

/// The name of a field or zone that has none of its own, made of the kind and the slot.
std::string defaultName(const char* kind, int slot);

}  // namespace orvantis::filter::detection
