#include "zones/Shapes.h"

namespace orvantis::testing {

using filter::detection::Point;

core::PlanarPolygon outline(const Coordinates& vertices) {
  core::PlanarPolygon polygon;
  for (const auto& [x, y] : vertices) {
    polygon.outer().emplace_back(x, y);
  }
  return polygon;
}

core::PlanarPolygon squareOutline(double low, double high) {
  return outline({{low, low}, {low, high}, {high, high}, {high, low}});
}

std::vector<Point> points(const Coordinates& vertices) {
  std::vector<Point> result;
  for (const auto& [x, y] : vertices) {
    result.emplace_back(x, y);
  }
  return result;
}

Coordinates coordinates(const std::vector<Point>& points) {
  Coordinates result;
  for (const Point& point : points) {
    result.emplace_back(point.x(), point.y());
  }
  return result;
}

Coordinates verticesOf(const filter::detection::Polygon& polygon) {
  std::vector<Point> vertices;
  polygon.getPolygon(vertices);
  return coordinates(vertices);
}

}  // namespace orvantis::testing
