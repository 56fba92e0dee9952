#include "classify/BorderlineSites.h"

#include <array>
#include <cmath>
#include <limits>
#include <memory>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

#include "trigonometry/Trigonometry.h"

namespace orvantis::testing {

namespace detection = filter::detection;

namespace {

constexpr double pi = 3.141592653589793;

template <typename Real>
double stepped(double value, std::size_t steps, bool isUp) {
  const Real end = isUp ? std::numeric_limits<Real>::infinity() : -std::numeric_limits<Real>::infinity();
  auto real = static_cast<Real>(value);
  for (std::size_t i = 0; i < steps; ++i) {
    real = std::nextafter(real, end);
  }
  return static_cast<double>(real);
}

}  // namespace

// Throughout, each random number has a statement of its own: the order within one is the compiler's.

double BorderlineSites::fraction() {
  return static_cast<double>(random_() >> 11U) * 0x1p-53;
}

double BorderlineSites::from(double low, double high) {
  return low + (high - low) * fraction();
}

std::size_t BorderlineSites::below(std::size_t limit) {
  return static_cast<std::size_t>(random_() % limit);
}

detection::ZoneDetector BorderlineSites::site() {
  const std::array<double, 4> centres = {0.0, 0.0, -1000.0, 4.5e5};
  centre_ = centres[below(centres.size())];
  zones_.clear();
  detection::ZoneDetector detector;
  for (int i = 0; i < 24; ++i) {
    zones_.push_back(zone());
    detector.setZone(zones_.back(), i / 3, i % 3);
  }
  for (int i = 0; i < 8; ++i) {
    zones_.push_back(zone());
    detector.appendExclusionZone(zones_.back());
  }
  return detector;
}

std::shared_ptr<detection::Zone3dBase> BorderlineSites::zone() {
  const std::size_t kind = below(8);
  const Shape shape = kind < 4 ? sector() : (kind < 7 ? rectangle() : polygon());
  shape->setName("zone " + std::to_string(zones_.size()));
  const double zMin = from(-2.0, 1.0);
  const double zMax = from(1.0, 4.0);
  return std::make_shared<detection::Zone3dBase>(shape, zMin, zMax);
}

BorderlineSites::Shape BorderlineSites::sector() {
  const std::array<double, 8> angles = {0.0, pi / 2, -pi, pi / 4, -3 * pi / 4, pi / 6, 1.0, 0.1};
  const double any = from(-pi, pi);
  const double first = below(2) == 0 ? any : angles[below(angles.size())];
  const double opening = from(0.01, 2 * pi);
  const double second = below(2) == 0 ? first + opening : angles[below(angles.size())];
  const double radius = from(0.5, 15.0);
  const double x = centre_ + from(-20.0, 20.0);
  const double y = centre_ + from(-20.0, 20.0);
  // The origin has to be one that sums leave exact now and then, so that points are really on the bearings.
  const bool isRound = below(2) == 0;
  const detection::Point origin(isRound ? centre_ : x, isRound ? centre_ : y);
  return std::make_shared<detection::Sector>("", first, second, radius, origin);
}

BorderlineSites::Shape BorderlineSites::rectangle() {
  const std::array<double, 8> rotations = {0.0, 90.0, 180.0, 270.0, 45.0, 30.0, 16.352, 6.766};
  const double any = from(-180.0, 180.0);
  const double rotation = below(2) == 0 ? any : rotations[below(rotations.size())];
  const double x = centre_ + from(-20.0, 20.0);
  const double y = centre_ + from(-20.0, 20.0);
  const double width = from(0.5, 12.0);
  const double height = from(0.5, 12.0);
  const std::vector<detection::Point> corners = {{x, y}, {x + width, y + height}};
  return std::make_shared<detection::Rectangle>("", corners, rotation);
}

BorderlineSites::Shape BorderlineSites::polygon() {
  std::vector<detection::Point> vertices;
  const double x = centre_ + from(-20.0, 20.0);
  const double y = centre_ + from(-20.0, 20.0);
  const std::size_t numVertices = 3 + below(14);
  for (std::size_t i = 0; i < numVertices; ++i) {
    const double angle = 2 * pi * static_cast<double>(i) / static_cast<double>(numVertices);
    const double radius = from(0.5, 12.0);
    vertices.emplace_back(x + radius * trigonometry::cosine(angle), y + radius * trigonometry::sine(angle));
  }
  return std::make_shared<detection::Polygon>("", vertices);
}

BorderlineSites::Point BorderlineSites::onBorder(const detection::Zone3dBase& zone) {
  const double share = fraction();
  const std::array<double, 6> heights = {zone.getZMin(), zone.getZMax(), 0.0, 1.0, 1.5, from(-2.0, 4.0)};
  const double z = heights[below(heights.size())];
  if (const auto* sector = dynamic_cast<const detection::Sector*>(zone.getZone2d().get())) {
    double first = 0.0;
    double second = 0.0;
    double radius = 0.0;
    sector->getSector(first, second, radius);
    const std::array<double, 3> bearings = {first, second, first + share * (second - first)};
    const double bearing = bearings[below(bearings.size())];
    const double distance = bearing == bearings[2] ? radius : radius * fraction();
    return {sector->getOrigin().x() + distance * trigonometry::cosine(bearing),
            sector->getOrigin().y() + distance * trigonometry::sine(bearing), z};
  }
  std::vector<detection::Point> ring;
  static_cast<const detection::Polygon&>(*zone.getZone2d()).getPolygon(ring);
  const std::size_t i = below(ring.size());
  const detection::Point& start = ring[i];
  const detection::Point& end = ring[(i + 1) % ring.size()];
  const std::array<double, 3> shares = {0.0, 0.5, share};
  const double along = shares[below(shares.size())];
  return {start.x() + along * (end.x() - start.x()), start.y() + along * (end.y() - start.y()), z};
}

double BorderlineSites::nudged(double value, bool asFloat) {
  const std::size_t steps = below(4) % 3;
  const bool isUp = below(2) == 0;
  return asFloat ? stepped<float>(value, steps, isUp) : stepped<double>(value, steps, isUp);
}

std::vector<BorderlineSites::Point> BorderlineSites::points(std::size_t size, bool asFloat) {
  std::vector<Point> points;
  points.reserve(size);
  for (std::size_t i = 0; i < size; ++i) {
    Point point = onBorder(*zones_[below(zones_.size())]);
    point.x = nudged(point.x, asFloat);
    point.y = nudged(point.y, asFloat);
    point.z = nudged(point.z, asFloat);
    points.push_back(point);
  }
  return points;
}

}  // namespace orvantis::testing
