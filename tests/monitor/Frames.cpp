#include "Frames.h"

#include <filter/detection/Polygon.h>

namespace orvantis::filter::monitor::testing {

std::shared_ptr<Zone3dBase> rectangleZone(const std::string& name, double x1, double y1, double x2,
                                          double y2) {
  const std::vector<detection::Point> corners = {{x1, y1}, {x1, y2}, {x2, y2}, {x2, y1}};
  return std::make_shared<Zone3dBase>(std::make_shared<detection::Polygon>(name, corners), 0.0, 2.0);
}

ZoneDetector detectorWithGate() {
  ZoneDetector detector;
  detector.setZone(rectangleZone("Gate", 0.0, 0.0, 10.0, 10.0), 0, 0);
  detector.getEvaluationField(0)->name = "Yard";
  return detector;
}

Points inGate(std::size_t count) {
  return Points(count, {5.0F, 5.0F, 1.0F});
}

PlanarPolygon ring(const std::vector<PlanarPoint>& vertices) {
  PlanarPolygon polygon;
  polygon.outer().assign(vertices.begin(), vertices.end());
  return polygon;
}

TrackedObject box(std::int32_t id, double x, double y, const std::string& className) {
  return {id, core::State(x, y, 2.0, 1.0, 0.0), 0.0, 1.0, className};
}

std::map<std::string, detection::CounterLine> oneLine(const PlanarPoint& first, const PlanarPoint& second) {
  return {
      {"L", detection::CounterLine("L", first, second, nullptr, detection::CounterLineDirectionType::ON)}};
}

}  // namespace orvantis::filter::monitor::testing
