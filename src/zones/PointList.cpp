#include "zones/PointList.h"

namespace orvantis::filter::detection {

void savePoint(SettingsManager& settings, int index, const Point& point) {
  settings.pathPush("Point", index, nullptr);
  settings.put<double>("x", point.x());
  settings.put<double>("y", point.y());
  settings.pathPop();
}

Point loadPoint(SettingsManager& settings, int index) {
  settings.pathPush("Point", index, nullptr);
  const auto y = settings.get<double>("y");
  const auto x = settings.get<double>("x");
  settings.pathPop();
  return {x, y};
}

}  // namespace orvantis::filter::detection
