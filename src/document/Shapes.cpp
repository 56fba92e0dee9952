#include "document/Shapes.h"

#include <cmath>

#include <filter/detection/Polygon.h>

#include "trigonometry/Length.h"

namespace orvantis::toolkit {

using filter::detection::Point;
using filter::detection::Polygon;
using filter::detection::Sector;

Arc arcOf(const Sector& sector) {
  double from = 0.0;
  double to = 0.0;
  double radius = 0.0;
  sector.getSector(from, to, radius);
  constexpr double sameAngle = 0.0001;  // the tolerance of the sector's own test
  if (std::abs(to - from) < sameAngle) {
    return {from, fullTurn, radius};
  }
  return {from, to > from ? to - from : to - from + fullTurn, radius};
}

std::vector<Point> vertices(const filter::detection::Zone& shape) {
  std::vector<Point> ring;
  if (const auto* polygon = dynamic_cast<const Polygon*>(&shape)) {
    polygon->getPolygon(ring);
  }
  return ring;
}

double coveredArea(const filter::detection::Zone& shape) {
  if (const auto* sector = dynamic_cast<const Sector*>(&shape)) {
    const Arc arc = arcOf(*sector);
    return arc.opening / 2.0 * arc.radius * arc.radius;
  }
  return std::abs(shape.area());
}

Point directionOf(const filter::detection::CounterLine& line) {
  const auto& points = line.getPoints();
  const double dx = points[1].x() - points[0].x();
  const double dy = points[1].y() - points[0].y();
  const double length = trigonometry::length(dx, dy);
  return length > 0.0 ? Point(dx / length, dy / length) : Point(0.0, 0.0);
}

}  // namespace orvantis::toolkit
