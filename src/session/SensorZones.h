#pragma once

#include <cstddef>
#include <optional>

#include <filter/monitor/ZoneMonitor.h>

#include "document/Configuration.h"

namespace orvantis::toolkit {

/// The most zones bound to sensors that can be followed.
constexpr std::size_t maxSensorZones = filter::monitor::NUM_ZONE_SLOTS;

/// A monitor of the zones of a document that are bound to sensors, with the options and the exclusion zones
/// of its detector. Zone i is in slot i. Nothing when the document has no such zones.
/// @throws std::invalid_argument for more than `maxSensorZones` of them
std::optional<filter::monitor::ZoneMonitor> monitorOfSensorZones(const Configuration& configuration);

/// The number of a zone in the list, from its slot in that monitor.
inline std::size_t sensorZoneOf(const filter::monitor::ZoneSlot& slot) noexcept {
  return filter::monitor::zoneSlotIndex(slot.field, slot.zone);
}

}  // namespace orvantis::toolkit
