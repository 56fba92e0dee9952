#include "monitor/Scenes.h"

#include <cmath>
#include <memory>
#include <numbers>
#include <random>
#include <utility>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

namespace orvantis::benchmarks {
namespace {

using namespace filter::detection;

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  double between(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(engine_);
  }

 private:
  std::mt19937_64 engine_;
};

std::shared_ptr<Zone3dBase> withHeights(std::shared_ptr<Zone> shape) {
  return std::make_shared<Zone3dBase>(std::move(shape), -1.0, 3.0);
}

// @param radii the distances of the vertices from the middle, in turn
std::shared_ptr<Zone> aboutPoint(const std::string& name, double x, double y,
                                 const std::vector<double>& radii) {
  std::vector<Point> vertices;
  for (std::size_t i = 0; i < radii.size(); ++i) {
    const double bearing =
        2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(radii.size());
    vertices.emplace_back(x + radii[i] * std::cos(bearing), y + radii[i] * std::sin(bearing));
  }
  return std::make_shared<Polygon>(name, vertices);
}

std::string numbered(char letter, int number) {
  return std::string(1, letter).append(std::to_string(number));
}

}  // namespace

ZoneDetector ringOfOctagons() {
  ZoneDetector detector;
  detector.setMinPoints(5);
  detector.setDebounceTime(ZoneDetector::Milliseconds(300));
  const std::vector<double> octagon(8, 6.0);
  for (int i = 0; i < 24; ++i) {
    const double bearing = i * std::numbers::pi / 12;
    detector.setZone(withHeights(aboutPoint(numbered('Z', i), 25.0 * std::cos(bearing),
                                            25.0 * std::sin(bearing), octagon)),
                     i / 3, i % 3);
  }
  for (int i = 0; i < 8; ++i) {
    const double bearing = i * std::numbers::pi / 4;
    detector.appendExclusionZone(withHeights(
        aboutPoint(numbered('X', i), 30.0 * std::cos(bearing), 30.0 * std::sin(bearing), octagon)));
  }
  return detector;
}

ZoneDetector mixedZones(std::uint64_t seed) {
  Random random(seed);
  ZoneDetector detector;
  for (int i = 0; i < 24; ++i) {
    const std::string name = numbered('Z', i);
    const double x = random.between(-42.0, 42.0);
    const double y = random.between(-42.0, 42.0);
    const double radius = random.between(2.0, 8.0);
    std::shared_ptr<Zone> shape;
    if (i % 3 == 0) {
      const double halfLength = radius * random.between(0.5, 0.9);
      const double halfWidth = std::sqrt(radius * radius - halfLength * halfLength);
      shape = std::make_shared<Rectangle>(
          name, std::vector<Point>{{x - halfLength, y - halfWidth}, {x + halfLength, y + halfWidth}},
          random.between(0.0, 180.0));
    } else if (i % 3 == 1) {
      std::vector<double> radii(16);
      for (double& each : radii) {
        each = radius * random.between(0.6, 1.0);
      }
      shape = aboutPoint(name, x, y, radii);
    } else {
      const double bearing = random.between(-3.0, 3.0);
      shape =
          std::make_shared<Sector>(name, bearing, bearing + random.between(0.5, 5.0), radius, Point(x, y));
    }
    detector.setZone(withHeights(std::move(shape)), i / 3, i % 3);
  }
  return detector;
}

std::map<std::string, CounterLine> spokes(int count) {
  std::map<std::string, CounterLine> lines;
  for (int i = 0; i < count; ++i) {
    const double bearing = 2.0 * std::numbers::pi * i / count;
    const std::string name = numbered('L', i);
    lines.emplace(name, CounterLine(name, {10.0 * std::cos(bearing), 10.0 * std::sin(bearing)},
                                    {40.0 * std::cos(bearing), 40.0 * std::sin(bearing)}, nullptr,
                                    CounterLineDirectionType::ON));
  }
  return lines;
}

std::vector<Objects> traffic(std::uint64_t seed, std::size_t numObjects, std::size_t numFrames) {
  Random random(seed);
  std::vector<Objects> frames(numFrames);
  for (std::size_t i = 0; i < numObjects; ++i) {
    const bool isCar = i % 3 != 0;
    const double x = random.between(-30.0, 30.0);
    const double y = random.between(-30.0, 30.0);
    const double circle = random.between(5.0, 25.0);
    const double step = (isCar ? 1.0 : 0.15) / circle;  // 10 m/s or 1.5 m/s, at ten frames a second
    double bearing = random.between(0.0, 2.0 * std::numbers::pi);
    for (Objects& frame : frames) {
      bearing += step;
      frame.push_back({static_cast<std::int32_t>(i),
                       core::State(x + circle * std::cos(bearing), y + circle * std::sin(bearing),
                                   isCar ? 4.5 : 0.6, isCar ? 1.8 : 0.5, bearing + std::numbers::pi / 2),
                       0.0, 1.6, isCar ? "car" : "person"});
    }
  }
  // Then the frames in reverse order, so that objects do not jump when the frames are repeated.
  for (std::size_t i = numFrames; i > 0; --i) {
    frames.push_back(frames[i - 1]);
  }
  return frames;
}

std::vector<float> records(std::uint64_t seed, std::size_t size) {
  Random random(seed);
  std::vector<float> values;
  values.reserve(4 * size);
  for (std::size_t i = 0; i < size; ++i) {
    for (const auto& [low, high] : {std::pair(-60.0, 60.0), std::pair(-60.0, 60.0), std::pair(-2.0, 4.0)}) {
      values.push_back(static_cast<float>(random.between(low, high)));
    }
    values.push_back(0.5F);
  }
  return values;
}

}  // namespace orvantis::benchmarks
