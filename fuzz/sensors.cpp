// checkSensors: any bytes give findings with places inside of the bytes, or sensors that are the same after
// they were written as JSON and read again.

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include "Check.h"
#include "Findings.h"
#include "document/Check.h"
#include "document/SensorList.h"

using namespace orvantis::toolkit;

namespace {

std::string written(const std::vector<Sensor>& sensors) {
  constexpr std::array<std::string_view, 6> keys = {"x", "y", "z", "roll", "pitch", "yaw"};
  boost::json::array list;
  for (const Sensor& sensor : sensors) {
    boost::json::object object{{"name", sensor.name}};
    if (sensor.pose) {
      boost::json::object pose;
      for (std::size_t i = 0; i < keys.size(); ++i) {
        pose[keys[i]] = (*sensor.pose)[i];
      }
      object["pose"] = pose;
    }
    if (!sensor.files.empty()) {
      object["files"] = boost::json::array(sensor.files.begin(), sensor.files.end());
    }
    if (!sensor.topic.empty()) {
      object["topic"] = sensor.topic;
    }
    list.push_back(object);
  }
  return boost::json::serialize(boost::json::object{{"sensors", list}});
}

bool areSame(const Sensor& one, const Sensor& other) {
  return one.name == other.name && one.pose == other.pose && one.files == other.files &&
         one.topic == other.topic;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const CheckedSensorList checked = checkSensors(text);
  orvantis::fuzz::checkFindings(checked.findings, text);
  const bool isGood = countOf(checked.findings, Severity::Error) == 0;
  ORVANTIS_FUZZ_CHECK(isGood == !checked.sensors.empty());

  std::set<std::string> names;
  for (const Sensor& sensor : checked.sensors) {
    ORVANTIS_FUZZ_CHECK(!sensor.name.empty() && names.insert(sensor.name).second);
    ORVANTIS_FUZZ_CHECK(!sensor.files.empty() || !sensor.topic.empty());
    for (const double value : sensor.pose.value_or(std::array<double, 6>{})) {
      ORVANTIS_FUZZ_CHECK(std::isfinite(value));
    }
  }
  const std::string again = written(checked.sensors);
  if (isGood && again.size() < documentSizeLimit) {
    const std::vector<Sensor> sensors = checkSensors(again).sensors;
    ORVANTIS_FUZZ_CHECK(sensors.size() == checked.sensors.size());
    for (std::size_t i = 0; i < sensors.size(); ++i) {
      ORVANTIS_FUZZ_CHECK(areSame(sensors[i], checked.sensors[i]));
    }
  }
  return 0;
}
