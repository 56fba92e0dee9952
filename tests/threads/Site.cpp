#include "Site.h"

#include <algorithm>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

namespace orvantis::testing {

using namespace filter::detection;

std::vector<std::shared_ptr<Zone3dBase>> zonesOfEveryShape() {
  const std::vector<Point> arrow = {{-4.0, -4.0}, {0.0, 6.0}, {4.0, -4.0}, {0.0, -1.0}};
  const std::vector<std::shared_ptr<Zone>> shapes = {
      std::make_shared<Polygon>("Arrow", arrow),
      std::make_shared<Rectangle>("Turned", std::vector<Point>{{-3.0, -2.0}, {3.0, 2.0}}, 30.0),
      std::make_shared<Sector>("Slice", -0.5, 1.5, 5.0),
      std::make_shared<Sector>("Behind", 2.0, -2.0, 5.0, Point(1.0, 1.0)),
      std::make_shared<Sector>("Disc", 0.0, 0.0, 2.0)};
  std::vector<std::shared_ptr<Zone3dBase>> zones;
  for (const auto& shape : shapes) {
    zones.push_back(std::make_shared<Zone3dBase>(shape, 0.0, 2.0));
  }
  return zones;
}

ZoneDetector detectorOfEveryShape() {
  ZoneDetector detector;
  int place = 0;
  for (const auto& zone : zonesOfEveryShape()) {
    detector.setZone(zone, place % 2, place / 2);
    ++place;
  }
  detector.appendExclusionZone(std::make_shared<Zone3dBase>(
      std::make_shared<Sector>("Pillar", 0.0, 0.0, 0.5, Point(1.0, 2.0)), 0.0, 2.0));
  return detector;
}

Points gridOfPoints() {
  Points points;
  for (int x = -50; x <= 50; ++x) {
    for (int y = -50; y <= 50; ++y) {
      points.push_back({static_cast<float>(x) * 0.12F, static_cast<float>(y) * 0.12F,
                        static_cast<float>((x + y) % 5) * 0.6F});
    }
  }
  return points;
}

filter::classify::PointsView<float> viewOf(const Points& points, std::size_t first, std::size_t size) {
  return filter::classify::PointsView<float>::interleaved(points.data() + first, sizeof(points[0]),
                                                          std::min(size, points.size() - first));
}

}  // namespace orvantis::testing
