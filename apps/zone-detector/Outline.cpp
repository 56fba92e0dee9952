#include "Outline.h"

#include <cmath>
#include <numbers>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>

namespace orvantis::app {
namespace {

using filter::detection::Point;
using filter::detection::Polygon;
using filter::detection::Sector;

constexpr double turn = 2.0 * std::numbers::pi;

struct Arc {
  double from;
  double opening;
  double radius;
};

Arc arcOf(const Sector& sector) {
  double from = 0.0;
  double to = 0.0;
  double radius = 0.0;
  sector.getSector(from, to, radius);
  constexpr double sameAngle = 0.0001;  // as the sector's own test has it
  if (std::abs(to - from) < sameAngle) {
    return {from, turn, radius};
  }
  return {from, to > from ? to - from : to - from + turn, radius};
}

std::vector<Point> outlineOf(const Sector& sector) {
  const Arc arc = arcOf(sector);
  constexpr double stepDegrees = 3.0;
  const int steps = static_cast<int>(std::ceil(arc.opening * 360.0 / turn / stepDegrees));
  std::vector<Point> ring;
  const bool isDisc = arc.opening >= turn;
  if (!isDisc) {
    ring.emplace_back(0.0, 0.0);
  }
  for (int i = 0; i < (isDisc ? steps : steps + 1); ++i) {
    const double angle = arc.from + arc.opening * i / steps;
    ring.emplace_back(arc.radius * std::cos(angle), arc.radius * std::sin(angle));
  }
  return ring;
}

}  // namespace

std::vector<Point> outline(const filter::detection::Zone& shape) {
  // A sector from a document has its origin at (0, 0): the document holds none.
  if (const auto* sector = dynamic_cast<const Sector*>(&shape)) {
    return outlineOf(*sector);
  }
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
  const double length = std::hypot(dx, dy);
  return length > 0.0 ? Point(dx / length, dy / length) : Point(0.0, 0.0);
}

}  // namespace orvantis::app
