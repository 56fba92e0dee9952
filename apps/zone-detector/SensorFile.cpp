#include "SensorFile.h"

#include <algorithm>
#include <filesystem>

#include "Console.h"
#include "DocumentFile.h"
#include "Input.h"
#include "text/Text.h"

namespace orvantis::app {

std::vector<Sensor> readSensors(const std::string& path, const std::vector<std::string>& clouds,
                                const Console& console) {
  CheckedSensorList list = checkSensors(readInput(path, documentSizeLimit));
  tellFindings(path, list.findings, "", console);
  // Paths are relative to the list, so that recordings can be moved together with it.
  const std::filesystem::path folder =
      path == standardInput ? std::filesystem::path() : std::filesystem::path(path).parent_path();
  bool takesClouds = false;
  for (Sensor& sensor : list.sensors) {
    const std::string name = "sensor \"" + printable(sensor.name) + "\"";
    if (sensor.files.empty()) {
      if (clouds.empty()) {
        throw Failure(path, name + " names no files; give them, or its recording as CLOUD");
      }
      takesClouds = true;
      sensor.files = clouds;
      continue;
    }
    for (std::string& file : sensor.files) {
      if (file == standardInput) {
        throw Failure(path, name + " cannot read the standard input; name its files");
      }
      file = (folder / file).string();
    }
  }
  if (!clouds.empty() && !takesClouds) {
    throw Failure(path, "every sensor names its files; leave out " + printable(clouds.front()));
  }
  return std::move(list.sensors);
}

void warnOfUnknownSensors(const Configuration& configuration, const std::vector<Sensor>& sensors,
                          const Console& console) {
  for (const auto& zone : configuration.sensorZones) {
    for (const std::string& name : zone->getSpecificSensors()) {
      const bool isKnown = std::any_of(sensors.begin(), sensors.end(),
                                       [&name](const Sensor& sensor) { return sensor.name == name; });
      if (!isKnown) {
        console.warn("zone \"" + printable(zone->getName()) + "\" is bound to sensor \"" + printable(name) +
                     "\", which is not in the list of sensors");
      }
    }
  }
}

}  // namespace orvantis::app
