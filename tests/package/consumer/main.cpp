// A user's first program: one zone, one line, a document out and in again.

#include <iostream>
#include <memory>
#include <sstream>

#include <core/State.h>
#include <filter/detection/CounterLines.h>
#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone3dTarsel.h>
#include <filter/detection/ZoneDetector.h>
#include <logging/LoggingManager.h>
#include <settings/SettingsPathManager.h>

using namespace orvantis::filter::detection;

int main() {
  ZoneDetector detector;
  const std::vector<Point> corners = {{0, 0}, {0, 2}, {2, 2}, {2, 0}};
  detector.setZone(std::make_shared<Zone3dBase>(std::make_shared<Polygon>("gate", corners)), 0, 0);

  orvantis::SettingsManager settings;
  detector.save(settings);
  std::stringstream document;
  const bool saved = settings.saveStream(document, orvantis::SettingsManager::JSON);
  ZoneDetector::validate(document);

  const CounterLine line("L1", {0.0, 0.0}, {1.0, 0.0}, nullptr, CounterLineDirectionType::ON);
  const bool meets = line.intersects(orvantis::core::State(0.5, 0.0, 1.0, 1.0, 0.0));
  const auto [id, side] = CounterLineTrackable();

  orvantis::LoggingManager::getInstance().setLevel(orvantis::LogLevel::Error);
  try {
    detector.getZone(8, 0);
  } catch (const std::out_of_range& error) {
    std::cout << error.what() << '\n';
  }
  return saved && meets && id == 0 && side == CounterLineDirectionType::LEFT &&
                 detector.getZone(0, 0)->within(1.0, 1.0, 0.5) && Zone3dBase::DEFAULT_Z_MAX == 20.0F
             ? 0
             : 1;
}
