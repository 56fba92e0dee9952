#include "input/SensorFile.h"

#include <algorithm>
#include <filesystem>

#include "document/Check.h"
#include "document/FindingText.h"
#include "files/Failure.h"
#include "input/Input.h"
#include "text/Text.h"

namespace orvantis::toolkit {

std::vector<Sensor> readSensors(const std::string& path, const std::vector<std::string>& clouds,
                                const std::function<void(const std::string&)>& tell) {
  CheckedSensorList list = checkSensors(readInput(path, documentSizeLimit));
  if (countOf(list.findings, Severity::Error) > 0) {
    throw Failure(path, refusalOf(path, list.findings, ""));
  }
  for (const Finding& finding : list.findings) {
    tell(textOf(path, finding, "warning"));
  }
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

std::vector<std::string> unknownSensors(const Configuration& configuration,
                                        const std::vector<Sensor>& sensors) {
  std::vector<std::string> warnings;
  for (const auto& zone : configuration.sensorZones) {
    for (const std::string& name : zone->getSpecificSensors()) {
      const bool isKnown = std::any_of(sensors.begin(), sensors.end(),
                                       [&name](const Sensor& sensor) { return sensor.name == name; });
      if (!isKnown) {
        warnings.push_back("zone \"" + printable(zone->getName()) + "\" is bound to sensor \"" +
                           printable(name) + "\", which is not in the list of sensors");
      }
    }
  }
  return warnings;
}

}  // namespace orvantis::toolkit
