#include "session/SensorZones.h"

#include <stdexcept>
#include <string>

namespace orvantis::toolkit {

using filter::detection::ZoneDetector;
using filter::monitor::ZoneMonitor;

std::optional<ZoneMonitor> monitorOfSensorZones(const Configuration& configuration) {
  const auto& zones = configuration.sensorZones;
  if (zones.empty()) {
    return std::nullopt;
  }
  if (zones.size() > maxSensorZones) {
    throw std::invalid_argument("the document has " + std::to_string(zones.size()) +
                                " zones in \"Zone3d\"; at most " + std::to_string(maxSensorZones) +
                                " can be followed");
  }
  ZoneDetector detector(configuration.detector);
  for (int field = 0; field < ZoneDetector::NUM_EVAL_FIELDS; ++field) {
    detector.setEvaluationField(nullptr, field);
  }
  constexpr int zonesOfField = ZoneDetector::NUM_ZONES_PER_EVAL_FIELD;
  for (std::size_t i = 0; i < zones.size(); ++i) {
    const int slot = static_cast<int>(i);
    detector.setZone(zones[i], slot / zonesOfField, slot % zonesOfField);
  }
  return ZoneMonitor(detector);  // made from this detector, because an assigned copy would lose the bindings
}

}  // namespace orvantis::toolkit
