#include "classify/CriticalCases.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

namespace orvantis::testing {
namespace {

using filter::detection::Point;
using filter::detection::Polygon;
using filter::detection::Rectangle;
using filter::detection::Sector;
using filter::detection::ZoneDetector;

constexpr double pi = std::numbers::pi;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <typename Real>
double stepped(double value, int steps) {
  auto real = static_cast<Real>(value);
  const Real towards =
      steps > 0 ? std::numeric_limits<Real>::infinity() : -std::numeric_limits<Real>::infinity();
  for (int i = 0; i < std::abs(steps); ++i) {
    real = std::nextafter(real, towards);
  }
  return static_cast<double>(real);
}

}  // namespace

double CriticalCases::uniform(double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random_);
}

int CriticalCases::oneOf(int count) {
  return std::uniform_int_distribution<int>(0, count - 1)(random_);
}

template <typename T>
T CriticalCases::oneOf(const std::vector<T>& values) {
  return values[static_cast<std::size_t>(oneOf(static_cast<int>(values.size())))];
}

ZoneDetector CriticalCases::detector(int numZones) {
  extent_ = oneOf<double>({50.0, 50.0, 50.0, 10.0, 1.0, 0.01, 500.0, 3.0e4});
  const double offset = oneOf<double>({0.0, 0.0, 0.0, 20.0, 1.0e3, 4.5e5, 5.0e6});
  centreX_ = oneOf(2) == 0 ? offset : -offset;
  centreY_ = oneOf(2) == 0 ? offset : 0.0;
  ZoneDetector detector;
  for (int i = 0; i < numZones; ++i) {
    const auto zone = std::make_shared<Zone3dBase>(shape(), height(), height());
    if (zone->getZMin() > zone->getZMax() && oneOf(8) != 0) {
      const double upper = zone->getZMin();
      zone->setZMin(zone->getZMax());
      zone->setZMax(upper);
    }
    if (i % 3 == 2) {
      detector.appendExclusionZone(zone);
    } else {
      const int slot = i - i / 3;
      detector.setZone(zone, slot / 3 % 8, slot % 3);
    }
  }
  return detector;
}

CriticalCases::Shape CriticalCases::shape() {
  const std::string name = std::to_string(random_());
  Shape shape;
  const int kind = oneOf(10);
  if (kind < 5) {
    shape = ring();
  } else if (kind < 7) {
    shape = rectangle();
  } else {
    shape = sector();
  }
  shape->setName(name.substr(0, 18));
  return shape;
}

CriticalCases::Shape CriticalCases::ring() {
  const double cx = centreX_ + uniform(-extent_, extent_);
  const double cy = centreY_ + uniform(-extent_, extent_);
  const double size = extent_ * oneOf<double>({0.3, 0.3, 0.5, 0.1, 0.01, 1.0e-4});
  const int numVertices = 3 + oneOf(14);
  std::vector<Point> vertices;
  const int kind = oneOf(9);
  for (int i = 0; i < numVertices; ++i) {
    const double angle = 2.0 * pi * i / numVertices;
    switch (kind) {
      case 0:  // regular
        vertices.emplace_back(cx + size * std::cos(angle), cy + size * std::sin(angle));
        break;
      case 1: {  // star
        const double r = i % 2 == 0 ? size : 0.4 * size;
        vertices.emplace_back(cx + r * std::cos(angle), cy + r * std::sin(angle));
        break;
      }
      case 2:  // crosses itself, with almost upright edges
        vertices.emplace_back(i % 3 == 1 ? vertices.back().x() + size * std::pow(10.0, uniform(-16.0, -7.0))
                                         : cx + uniform(-size, size),
                              cy + uniform(-size, size));
        break;
      case 3:  // needle
        vertices.emplace_back(cx + uniform(-size, size), cy + 1.0e-9 * uniform(-size, size));
        break;
      case 4:  // upright needle
        vertices.emplace_back(cx + std::pow(10.0, uniform(-17.0, -2.0)) * uniform(-1.0, 1.0),
                              cy + uniform(-size, size));
        break;
      case 5:  // on a coarse grid: axis-parallel edges, collinear runs, repeated vertices
        vertices.emplace_back(std::round(centreX_) + size * (oneOf(5) - 2.0),
                              std::round(centreY_) + size * (oneOf(5) - 2.0));
        break;
      case 6:  // floats as vertices
        vertices.emplace_back(static_cast<float>(cx + uniform(-size, size)),
                              static_cast<float>(cy + uniform(-size, size)));
        break;
      case 7:  // winds twice
        vertices.emplace_back(cx + size * std::cos(2.0 * angle) * (1.0 + 0.01 * i),
                              cy + size * std::sin(2.0 * angle) * (1.0 + 0.01 * i));
        break;
      default:  // almost upright edges
        vertices.emplace_back(cx + (i % 4 < 2 ? -size : size) + std::pow(10.0, uniform(-17.0, -3.0)),
                              cy + (i % 4 == 0 || i % 4 == 3 ? -size : size));
        break;
    }
  }
  if (oneOf(4) == 0) {
    vertices.push_back(vertices.front());
  }
  if (oneOf(12) == 0) {
    vertices.resize(static_cast<std::size_t>(oneOf(4)), vertices.front());
  }
  if (oneOf(16) == 0 && !vertices.empty()) {
    std::ranges::fill(vertices, vertices.front());
  }
  if (oneOf(2) == 0) {
    std::ranges::reverse(vertices);
  }
  return std::make_shared<Polygon>("", vertices);
}

CriticalCases::Shape CriticalCases::rectangle() {
  const double cx = centreX_ + uniform(-extent_, extent_);
  const double cy = centreY_ + uniform(-extent_, extent_);
  const double width = extent_ * uniform(-0.5, 0.5);
  const double height = extent_ * uniform(-0.5, 0.5);
  const double rotation =
      oneOf<double>({0.0, 90.0, 180.0, -90.0, 270.0, 45.0, 30.0, 1.0e-9, 89.9999999, uniform(-360.0, 360.0)});
  return std::make_shared<Rectangle>(
      "", std::vector<Point>{{cx - width, cy - height}, {cx + width, cy + height}}, rotation);
}

CriticalCases::Shape CriticalCases::sector() {
  const double radius = extent_ * oneOf<double>({0.5, 0.2, 0.05, 1.0, 1.0e-5, 0.0, -0.3});
  const double first = oneOf<double>({uniform(-pi, pi), 0.0, -pi, pi / 2.0, -pi / 4.0, 3.0 * pi / 4.0});
  const double second = oneOf<double>({uniform(-pi, pi), pi, first, first + 2.0 * pi, first + 0.01,
                                       first - 0.01, first + pi, -pi / 2.0, pi / 4.0, 0.0});
  const auto sector = std::make_shared<Sector>("", first, second, radius);
  if (oneOf(4) != 0) {
    sector->setOrigin(centreX_ + uniform(-extent_, extent_), centreY_ + uniform(-extent_, extent_));
  }
  return sector;
}

double CriticalCases::height() {
  return oneOf<double>({-1.0, 0.0, 0.5, 2.0, 20.0, 0.1, 1.0e-310, infinity, -infinity, uniform(-2.0, 4.0),
                        static_cast<double>(static_cast<float>(uniform(-2.0, 4.0)))});
}

double CriticalCases::nudged(double value, bool asFloat) {
  const int steps = oneOf(3) == 0 ? 0 : oneOf(7) - 3;
  return asFloat ? stepped<float>(value, steps) : stepped<double>(value, steps);
}

double CriticalCases::special() {
  return oneOf<double>({nan, nan, infinity, -infinity, 0.0, -0.0, std::numeric_limits<double>::denorm_min(),
                        1.0e-40, 1.0e6, -1.0e6, 1.0e7, 3.4e7, 1.0e9, 3.0e38, -3.0e38, 1.0e300, -1.0e300,
                        std::numeric_limits<double>::max()});
}

Point3 CriticalCases::nearRing(const Zone3dBase& zone, bool asFloat) {
  std::vector<Point> ring;
  static_cast<const Polygon&>(*zone.getZone2d()).getPolygon(ring);
  if (ring.empty()) {
    return {centreX_, centreY_, 0.0};
  }
  const auto numVertices = static_cast<int>(ring.size());
  const int i = oneOf(numVertices);
  const Point& from = ring[static_cast<std::size_t>(i)];
  const Point& to = ring[static_cast<std::size_t>((i + 1) % numVertices)];
  switch (oneOf(7)) {
    case 6: {  // beyond an end of an edge, between its ends in x
      const double beyond = std::pow(10.0, uniform(-4.0, 0.0)) * extent_ * (oneOf(2) == 0 ? 1.0 : -1.0);
      const double t = uniform(0.0, 1.0);
      return {from.x() + t * (to.x() - from.x()), (oneOf(2) == 0 ? from : to).y() + beyond, 0.0};
    }
    case 0:
      return {nudged(from.x(), asFloat), nudged(from.y(), asFloat), 0.0};
    case 1:  // level with one vertex in each direction
      return {nudged(from.x(), asFloat), nudged(oneOf(ring).y(), asFloat), 0.0};
    case 2:  // above or below a vertex
      return {nudged(from.x(), asFloat), centreY_ + uniform(-2.0, 2.0) * extent_, 0.0};
    case 3: {  // a little beside an edge
      const double t = uniform(0.0, 1.0);
      const double off = std::pow(10.0, uniform(-16.0, -1.0)) * (oneOf(2) == 0 ? 1.0 : -1.0);
      return {from.x() + t * (to.x() - from.x()) + off, from.y() + t * (to.y() - from.y()) - off, 0.0};
    }
    default: {  // on an edge, or on its line
      const double t = oneOf<double>({uniform(0.0, 1.0), uniform(0.0, 1.0), 0.5, 0.25, uniform(-1.0, 2.0)});
      return {nudged(from.x() + t * (to.x() - from.x()), asFloat),
              nudged(from.y() + t * (to.y() - from.y()), asFloat), 0.0};
    }
  }
}

Point3 CriticalCases::nearSector(const Zone3dBase& zone, bool asFloat) {
  const auto& sector = static_cast<const Sector&>(*zone.getZone2d());
  double first = 0.0;
  double second = 0.0;
  double radius = 0.0;
  sector.getSector(first, second, radius);
  const Point origin = sector.getOrigin();
  const double bearing =
      oneOf<double>({first, second, first, second, 0.0, pi / 2.0, pi, uniform(-pi, pi), uniform(-pi, pi)});
  const double distance =
      oneOf<double>({radius, radius, radius * uniform(0.0, 1.0), radius * uniform(0.0, 1.2), 0.0,
                     radius * std::pow(10.0, uniform(-15.0, 0.0)),
                     radius * (1.0 + oneOf<double>({1.0, -1.0}) * std::pow(10.0, uniform(-16.0, -2.0)))});
  return {nudged(origin.x() + distance * std::cos(bearing), asFloat),
          nudged(origin.y() + distance * std::sin(bearing), asFloat), 0.0};
}

double CriticalCases::heightFor(const Zone3dBase& zone, bool asFloat) {
  switch (oneOf(8)) {
    case 0:
      return nudged(zone.getZMin(), asFloat);
    case 1:
      return nudged(zone.getZMax(), asFloat);
    case 2:
      return uniform(-3.0, 5.0);
    case 3:
      return oneOf(8) == 0 ? special() : uniform(-3.0, 5.0);
    default: {
      const double low = std::max(zone.getZMin(), -1.0e3);
      const double high = std::min(zone.getZMax(), 1.0e3);
      return low + uniform(0.0, 1.0) * (high - low);
    }
  }
}

Point3 CriticalCases::pointFor(const Zone3dBase& zone, bool asFloat) {
  Point3 point{};
  const int kind = oneOf(10);
  if (kind < 7) {
    const bool isSector = zone.getZone2d()->type() == Sector::TYPE_NAME;
    point = isSector ? nearSector(zone, asFloat) : nearRing(zone, asFloat);
  } else {
    point = {centreX_ + uniform(-2.2, 2.2) * extent_, centreY_ + uniform(-2.2, 2.2) * extent_, 0.0};
  }
  if (oneOf(40) == 0) {
    point.x = special();
  }
  if (oneOf(40) == 0) {
    point.y = special();
  }
  point.z = heightFor(zone, asFloat);
  return point;
}

std::vector<Point3> CriticalCases::points(const ZoneDetector& detector, std::size_t size, bool asFloat) {
  std::vector<std::shared_ptr<Zone3dBase>> zones = detector.getExclusionZoneVector();
  for (int i = 0; i < 24; ++i) {
    if (const auto zone = detector.getZone(i / 3, i % 3)) {
      zones.push_back(zone);
    }
  }
  std::vector<Point3> points;
  points.reserve(size);
  for (std::size_t i = 0; i < size; ++i) {
    Point3 point = pointFor(*oneOf(zones), asFloat);
    if (asFloat) {
      for (double* value : {&point.x, &point.y, &point.z}) {
        *value = static_cast<double>(static_cast<float>(*value));
      }
    }
    points.push_back(point);
  }
  return points;
}

}  // namespace orvantis::testing
