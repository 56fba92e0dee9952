#include "document/SensorList.h"

#include "document/Check.h"
#include "document/JsonFault.h"
#include "document/LocatedJson.h"
#include "document/checks/Structure.h"
#include "document/checks/Values.h"

namespace orvantis::toolkit {
namespace {

std::string textUnder(const LocatedNode& object, std::string_view key) {
  const LocatedNode* text = object.find(key);
  return text != nullptr ? text->text : std::string();
}

// The node was checked before, so everything in it can be read.
Sensor sensorOf(const LocatedNode& node) {
  Sensor sensor;
  sensor.name = textUnder(node, "name");
  sensor.topic = textUnder(node, "topic");
  for (const LocatedNode* file : node.all("files")) {
    sensor.files.push_back(file->text);
  }
  if (const LocatedNode* pose = node.find("pose")) {
    constexpr std::array<std::string_view, 6> keys = {"x", "y", "z", "roll", "pitch", "yaw"};
    auto& values = sensor.pose.emplace();
    for (std::size_t i = 0; i < keys.size(); ++i) {
      values[i] = numberUnder(*pose, keys[i]).value();
    }
  }
  return sensor;
}

}  // namespace

CheckedSensorList checkSensors(std::string_view text) {
  CheckedSensorList result;
  if (text.size() >= documentSizeLimit) {
    result.findings.push_back(tooLarge("the list of sensors"));
    return result;
  }
  const LocatedDocument document = parseLocated(text);
  if (!document.root) {
    result.findings.push_back(describe(document.fault, text));
    return result;
  }
  result.findings = findingsOfSensors(*document.root);
  if (countOf(result.findings, Severity::Error) == 0) {
    for (const LocatedNode* sensor : document.root->all("sensors")) {
      result.sensors.push_back(sensorOf(*sensor));
    }
  }
  return result;
}

}  // namespace orvantis::toolkit
