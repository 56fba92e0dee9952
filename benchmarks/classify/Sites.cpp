#include "classify/Sites.h"

#include <algorithm>
#include <array>
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

class SiteMaker {
 public:
  explicit SiteMaker(std::uint64_t seed) : random_(seed) {}

  double uniform(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random_);
  }
  double normal(double deviation) { return std::normal_distribution<double>(0.0, deviation)(random_); }
  Point strewn(double half) {
    const double x = uniform(-half, half);
    return {x, uniform(-half, half)};
  }

  // `flatness` times as wide as long, along the x axis before it is turned.
  std::shared_ptr<Zone> polygon(const Point& at, double radius, int numVertices, double flatness = 1.0) {
    const double turn = flatness < 1.0 ? uniform(0.0, pi) : 0.0;
    std::vector<Point> vertices;
    for (int i = 0; i < numVertices; ++i) {
      const double r = radius * uniform(0.7, 1.0);
      const double bearing = -2.0 * pi * i / numVertices;
      const double along = r * std::cos(bearing);
      const double across = flatness * r * std::sin(bearing);
      vertices.emplace_back(at.x() + along * std::cos(turn) - across * std::sin(turn),
                            at.y() + along * std::sin(turn) + across * std::cos(turn));
    }
    return std::make_shared<Polygon>("", vertices);
  }
  std::shared_ptr<Zone> rectangle(const Point& at, double length, double width) {
    return std::make_shared<Rectangle>(
        "", std::vector<Point>{{at.x() - length, at.y() - width}, {at.x() + length, at.y() + width}},
        uniform(0.0, 360.0));
  }
  std::shared_ptr<Zone> sector(const Point& at, double radius, double opening) {
    const double from = uniform(-pi, pi);
    return std::make_shared<Sector>("", from, from + opening, radius, at);
  }

  // A polygon, a rectangle or a sector, in turn.
  std::shared_ptr<Zone> mixed(int number, const Point& at, double radius, double flatness = 1.0) {
    if (number % 3 == 0) {
      return polygon(at, radius, 3 + number % 14, flatness);
    }
    if (number % 3 == 1) {
      return rectangle(at, radius, flatness * radius * uniform(0.5, 1.0));
    }
    return sector(at, radius, flatness < 1.0 ? flatness : uniform(0.5, 4.0));
  }

  void add(const std::shared_ptr<Zone>& shape) {
    const double zMin = uniform(-1.0, 0.5);
    shape->setName("Zone " + std::to_string(numZones_));
    const auto zone = std::make_shared<Zone3dBase>(shape, zMin, zMin + uniform(0.5, 3.0));
    if (numZones_ < numFieldZones) {
      detector_.setZone(zone, numZones_ / 3, numZones_ % 3);
    } else {
      detector_.appendExclusionZone(zone);
    }
    ++numZones_;
  }

  const ZoneDetector& detector() const { return detector_; }

 private:
  std::mt19937_64 random_;
  ZoneDetector detector_;
  int numZones_ = 0;
};

constexpr double halfOfDense = 42.0;

}  // namespace

ZoneDetector site(Shapes shapes, int numZones, int numVertices, double extent) {
  SiteMaker maker(7);
  for (int i = 0; i < numZones; ++i) {
    const Point at = maker.strewn(0.4 * extent);
    const double radius = maker.uniform(0.05, 0.15) * extent;
    if (shapes == Shapes::Polygons || i % 3 == 0) {
      maker.add(maker.polygon(at, radius, shapes == Shapes::Polygons ? numVertices : 3 + i % 14));
    } else if (i % 3 == 1) {
      maker.add(maker.rectangle(at, radius, maker.uniform(0.05, 0.15) * extent));
    } else {
      maker.add(maker.sector(at, 2.0 * radius, maker.uniform(0.5, 4.0)));
    }
  }
  return maker.detector();
}

ZoneDetector denseSite(Arrangement arrangement, std::uint64_t seed) {
  constexpr double sliver = 1.0 / 30.0;
  constexpr std::size_t numClusters = 5;
  constexpr std::size_t numNests = 8;
  SiteMaker maker(seed);
  std::vector<Point> places;
  for (std::size_t i = 0; i < std::max(numClusters, numNests); ++i) {
    places.push_back(maker.strewn(halfOfDense - 10.0));
  }
  for (int i = 0; i < mostZones; ++i) {
    const auto number = static_cast<std::size_t>(i);
    Point at = maker.strewn(halfOfDense - 8.0);
    double radius = maker.uniform(2.0, 8.0);
    if (arrangement == Arrangement::Clustered) {
      const Point& place = places[number % numClusters];
      at = {place.x() + std::clamp(maker.normal(4.0), -8.0, 8.0),
            place.y() + std::clamp(maker.normal(4.0), -8.0, 8.0)};
    } else if (arrangement == Arrangement::Nested) {
      at = places[number % numNests];
      radius = 2.0 + 6.0 * static_cast<double>(number / numNests) / (mostZones / 8.0);
    }
    maker.add(maker.mixed(i, at, radius, arrangement == Arrangement::Slivers ? sliver : 1.0));
  }
  return maker.detector();
}

ZoneDetector siteWithFarZone(double distance, std::uint64_t seed) {
  SiteMaker maker(seed);
  for (int i = 0; i + 1 < mostZones; ++i) {
    const Point at = maker.strewn(halfOfDense - 8.0);
    maker.add(maker.mixed(i, at, maker.uniform(2.0, 8.0)));
  }
  if (distance > 0.0) {
    maker.add(maker.mixed(mostZones - 1, {distance, -distance}, 5.0));
  }
  return maker.detector();
}

ZoneDetector tinyZones(std::uint64_t seed) {
  SiteMaker maker(seed);
  for (int i = 0; i < mostZones; ++i) {
    maker.add(maker.mixed(i, maker.strewn(50.0), 0.01));
  }
  return maker.detector();
}

ZoneDetector stackedStars() {
  ZoneDetector detector;
  constexpr int numVertices = 16;
  for (int i = 0; i < mostZones; ++i) {
    std::vector<Point> vertices;
    for (int k = 0; k < numVertices; ++k) {
      const double r = k % 2 == 0 ? 5.0 : 2.0;
      const double bearing = -2.0 * pi * (k + static_cast<double>(i) / mostZones) / numVertices;
      vertices.emplace_back(r * std::cos(bearing), r * std::sin(bearing));
    }
    const auto zone = std::make_shared<Zone3dBase>(
        std::make_shared<Polygon>("Star " + std::to_string(i), vertices), -1.0, 2.0);
    if (i < numFieldZones) {
      detector.setZone(zone, i / 3, i % 3);
    } else {
      detector.appendExclusionZone(zone);
    }
  }
  return detector;
}

}  // namespace orvantis::benchmarks
