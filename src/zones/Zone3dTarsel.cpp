#include <ostream>
#include <random>
#include <utility>

#include <boost/lexical_cast.hpp>
#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

#include <filter/detection/Zone3dTarsel.h>
#include <logging/LoggingManager.h>
#include <settings/SettingsManager.h>

namespace orvantis::filter::detection {
namespace {

// Writes a blank after each name.
struct NameList {
  const std::set<std::string>& names;

  friend std::ostream& operator<<(std::ostream& out, const NameList& list) {
    for (const std::string& name : list.names) {
      out << name << ' ';
    }
    return out;
  }
};

}  // namespace

Zone3dTarsel::Zone3dTarsel(SettingsManager& settings, int index) {
  logger_ = LoggingManager::getInstance().getLogger("Zone3d");
  Zone3dTarsel::load(settings, index);
}

Zone3dTarsel::Zone3dTarsel(std::shared_ptr<Zone> zone, double zMin, double zMax, boost::uuids::uuid id)
    : Zone3dBase(std::move(zone), zMin, zMax), id_(id) {
  logger_ = LoggingManager::getInstance().getLogger("Zone3d");
}

Zone3dTarsel::~Zone3dTarsel() = default;

void Zone3dTarsel::setSpecificSensors(const std::vector<std::string>& sensors) {
  logger_.debugStream().write("Exclusion sensors before setting: ", NameList{specificSensors_});
  specificSensors_ = std::set<std::string>(sensors.begin(), sensors.end());
  logger_.debugStream().write("Exclusion sensors after setting: ", NameList{specificSensors_});
}

void Zone3dTarsel::load(SettingsManager& settings, int index) {
  settings.pathPush("Zone3d", index, nullptr);
  enabled_ = settings.get<bool>("enabled", true);
  id_ = boost::lexical_cast<boost::uuids::uuid>(settings.get<std::string>("id"));
  if (id_.is_nil()) {
    std::random_device device;  // there is one on every system
    id_ = boost::uuids::basic_random_generator<std::random_device>(device)();
  }
  specificSensors_.clear();
  if (settings.exists("Sensors")) {
    settings.pathPush("Sensors");
    for (int i = 0; i < settings.getChildCount("lidar"); ++i) {
      specificSensors_.insert(settings.getIndexedValue("lidar", i));
    }
    settings.pathPop();
  }
  loadShape(settings);
  setZMin(settings.get<double>("zMin"));
  setZMax(settings.get<double>("zMax"));
  settings.pathPop();
}

void Zone3dTarsel::save(SettingsManager& settings, int index) {
  settings.pathPush("Zone3d", index, nullptr);
  settings.put<bool>("enabled", enabled_);
  if (const std::shared_ptr<Zone> zone = getZone2d()) {
    settings.put<std::string>("id", boost::lexical_cast<std::string>(id_));
    settings.put<std::string>("name", zone->name());
    zone->save(settings);
  }
  settings.put<double>("zMin", getZMin());
  settings.put<double>("zMax", getZMax());
  if (!specificSensors_.empty()) {
    settings.pathPush("Sensors");
    for (const std::string& sensor : specificSensors_) {
      // `put` would write every name over the first one. With `add`, the names are added to those of an
      // element that is there already.
      settings.add("lidar", sensor);
    }
    settings.pathPop();
  }
  settings.pathPop();
}

}  // namespace orvantis::filter::detection
