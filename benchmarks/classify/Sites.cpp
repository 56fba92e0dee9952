#include "classify/Sites.h"

#include <cmath>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

namespace orvantis::benchmarks {
namespace {

using namespace filter::detection;

constexpr double pi = std::numbers::pi;
constexpr int numFieldZones = 24;

void add(ZoneDetector& detector, int number, const std::shared_ptr<Zone>& shape, double zMin, double zMax) {
  shape->setName("Zone " + std::to_string(number));
  const auto zone = std::make_shared<Zone3dBase>(shape, zMin, zMax);
  if (number < numFieldZones) {
    detector.setZone(zone, number / 3, number % 3);
  } else {
    detector.appendExclusionZone(zone);
  }
}

class ShapeMaker {
 public:
  explicit ShapeMaker(double extent) : extent_(extent) {}

  double uniform(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random_);
  }
  Point centre() { return {uniform(-0.4, 0.4) * extent_, uniform(-0.4, 0.4) * extent_}; }
  double radius() { return uniform(0.05, 0.15) * extent_; }

  std::shared_ptr<Zone> polygon(int numVertices) {
    const Point at = centre();
    const double size = radius();
    std::vector<Point> vertices;
    for (int i = 0; i < numVertices; ++i) {
      const double r = size * uniform(0.7, 1.0);
      const double bearing = -2.0 * pi * i / numVertices;
      vertices.emplace_back(at.x() + r * std::cos(bearing), at.y() + r * std::sin(bearing));
    }
    return std::make_shared<Polygon>("", vertices);
  }

  std::shared_ptr<Zone> rectangle() {
    const Point at = centre();
    const double length = radius();
    const double width = radius();
    return std::make_shared<Rectangle>(
        "", std::vector<Point>{{at.x() - length, at.y() - width}, {at.x() + length, at.y() + width}},
        uniform(0.0, 360.0));
  }

  std::shared_ptr<Zone> sector() {
    const double from = uniform(-pi, pi);
    return std::make_shared<Sector>("", from, from + uniform(0.5, 4.0), 2.0 * radius(), centre());
  }

 private:
  double extent_;
  std::mt19937_64 random_{7};
};

}  // namespace

ZoneDetector site(Shapes shapes, int numZones, int numVertices, double extent) {
  ZoneDetector detector;
  ShapeMaker maker(extent);
  for (int i = 0; i < numZones; ++i) {
    std::shared_ptr<Zone> shape;
    if (shapes == Shapes::Polygons || i % 3 == 0) {
      shape = maker.polygon(shapes == Shapes::Polygons ? numVertices : 3 + i % 14);
    } else {
      shape = i % 3 == 1 ? maker.rectangle() : maker.sector();
    }
    const double zMin = maker.uniform(-1.0, 0.5);
    add(detector, i, shape, zMin, zMin + maker.uniform(0.5, 3.0));
  }
  return detector;
}

ZoneDetector stackedStars() {
  ZoneDetector detector;
  constexpr int numStars = 56;
  constexpr int numVertices = 16;
  for (int i = 0; i < numStars; ++i) {
    std::vector<Point> vertices;
    for (int k = 0; k < numVertices; ++k) {
      const double r = k % 2 == 0 ? 5.0 : 2.0;
      const double bearing = -2.0 * pi * (k + static_cast<double>(i) / numStars) / numVertices;
      vertices.emplace_back(r * std::cos(bearing), r * std::sin(bearing));
    }
    add(detector, i, std::make_shared<Polygon>("", vertices), -1.0, 2.0);
  }
  return detector;
}

}  // namespace orvantis::benchmarks
