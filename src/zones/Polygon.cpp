#include <filter/detection/Polygon.h>
#include <settings/SettingsManager.h>

#include "planar/Region.h"
#include "zones/PointList.h"

namespace orvantis::filter::detection {

const std::string Polygon::TYPE_NAME = "polygon";
const int Polygon::MIN_NUM_POLYGON_SIDES;
const int Polygon::MAX_NUM_POLYGON_SIDES;

Polygon::Polygon(const std::string& name) : Zone(name) {}

Polygon::Polygon(const std::string& name, SettingsManager& settings) : Zone(name) {
  Polygon::load(settings);
}

Polygon::Polygon(const std::string& name, const std::vector<Point>& points) : Zone(name) {
  for (const Point& point : points) {
    polygon_.outer().emplace_back(point.x(), point.y());
  }
}

Polygon::~Polygon() = default;

void Polygon::getPolygon(std::vector<Point>& out) const {
  for (const core::PlanarPoint& vertex : polygon_.outer()) {
    out.emplace_back(vertex.x(), vertex.y());
  }
}

std::shared_ptr<Zone> Polygon::makeCopy() const {
  std::vector<Point> points;
  getPolygon(points);
  return std::make_shared<Polygon>(name(), points);
}

bool Polygon::within(const polygon& area) const {
  return planar::within(area, polygon_);
}

bool Polygon::within(const Point& point) const {
  return planar::contains(polygon_, {point.x(), point.y()});
}

bool Polygon::intersects(const polygon& area) const {
  return planar::intersects(area, polygon_);
}

bool Polygon::overlaps(const polygon& area) const {
  return planar::overlaps(area, polygon_);
}

double Polygon::area() const {
  return planar::signedArea(polygon_);
}

void Polygon::save(SettingsManager& settings) const {
  settings.put<std::string>("shape", Polygon::TYPE_NAME);
  settings.pathPush("Polygon");
  int index = 0;
  for (const core::PlanarPoint& vertex : polygon_.outer()) {
    savePoint(settings, index++, {vertex.x(), vertex.y()});
  }
  settings.pathPop();
}

void Polygon::load(SettingsManager& settings) {
  settings.pathPush("Polygon");
  polygon_.outer().clear();
  for (int i = 0; i < settings.getChildCount("Point"); ++i) {
    const Point point = loadPoint(settings, i);
    polygon_.outer().emplace_back(point.x(), point.y());
  }
  settings.pathPop();
}

const std::string& Polygon::type() const {
  return TYPE_NAME;
}

}  // namespace orvantis::filter::detection
