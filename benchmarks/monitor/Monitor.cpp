// What a frame costs: points into zone states, objects into zones, objects over lines.

#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <filter/detection/Polygon.h>
#include <filter/monitor/LineCounter.h>
#include <filter/monitor/ObjectMonitor.h>
#include <filter/monitor/ZoneMonitor.h>

namespace {

using namespace orvantis::filter;
using monitor::Stamp;
using monitor::TrackedObject;

constexpr double radius = 60.0;  // of the scene, in metres
constexpr Stamp period = std::chrono::milliseconds(100);

std::string numbered(char letter, int number) {
  return std::string(1, letter).append(std::to_string(number));
}

std::shared_ptr<detection::Zone3dBase> octagon(const std::string& name, double x, double y) {
  std::vector<detection::Point> vertices;
  for (int i = 0; i < 8; ++i) {
    vertices.emplace_back(x + 6.0 * std::cos(i * std::numbers::pi / 4),
                          y + 6.0 * std::sin(i * std::numbers::pi / 4));
  }
  return std::make_shared<detection::Zone3dBase>(std::make_shared<detection::Polygon>(name, vertices), -1.0,
                                                 3.0);
}

// All 24 zones and 8 exclusion zones, spread over the scene.
detection::ZoneDetector detector() {
  detection::ZoneDetector detector;
  detector.setMinPoints(5);
  detector.setDebounceTime(detection::ZoneDetector::Milliseconds(300));
  for (int i = 0; i < 24; ++i) {
    const double bearing = i * std::numbers::pi / 12;
    detector.setZone(octagon(numbered('Z', i), 25.0 * std::cos(bearing), 25.0 * std::sin(bearing)), i / 3,
                     i % 3);
  }
  for (int i = 0; i < 8; ++i) {
    const double bearing = i * std::numbers::pi / 4;
    detector.appendExclusionZone(
        octagon(numbered('X', i), 30.0 * std::cos(bearing), 30.0 * std::sin(bearing)));
  }
  return detector;
}

void pointsOfAFrame(benchmark::State& state) {
  std::mt19937 random(1);
  std::uniform_real_distribution<float> place(-60.0F, 60.0F);
  std::uniform_real_distribution<float> height(-2.0F, 4.0F);
  std::vector<float> points;
  const auto size = static_cast<std::size_t>(state.range(0));
  for (std::size_t i = 0; i < size; ++i) {
    points.insert(points.end(), {place(random), place(random), height(random)});
  }
  const auto view = classify::PointsView<float>::interleaved(points.data(), 3 * sizeof(float), size);
  monitor::ZoneMonitor zones(detector());
  Stamp stamp{0};
  for (auto _ : state) {
    benchmark::DoNotOptimize(zones.update(stamp += period, view));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(pointsOfAFrame)->Arg(200'000)->Unit(benchmark::kMillisecond);

// Objects that drive about in circles, so that they keep entering zones and crossing lines.
class Traffic {
 public:
  explicit Traffic(std::size_t size) {
    std::uniform_real_distribution<double> any(0.0, 1.0);
    for (std::size_t i = 0; i < size; ++i) {
      cars_.push_back({(any(random_) - 0.5) * radius, (any(random_) - 0.5) * radius,
                       5.0 + 20.0 * any(random_), 2.0 * std::numbers::pi * any(random_),
                       0.02 + 0.05 * any(random_)});
    }
  }

  const std::vector<TrackedObject>& next() {
    objects_.clear();
    for (std::size_t i = 0; i < cars_.size(); ++i) {
      Car& car = cars_[i];
      car.bearing += car.step;
      objects_.push_back({static_cast<std::int32_t>(i),
                          orvantis::core::State(car.x + car.circle * std::cos(car.bearing),
                                                car.y + car.circle * std::sin(car.bearing), 4.5, 1.8,
                                                car.bearing + std::numbers::pi / 2),
                          0.0, 1.6, "car"});
    }
    return objects_;
  }

 private:
  struct Car {
    double x;
    double y;
    double circle;
    double bearing;
    double step;
  };
  std::mt19937 random_{2};
  std::vector<Car> cars_;
  std::vector<TrackedObject> objects_;
};

// Times `update(stamp, objects)`; making the objects is the tracker's business and left out.
template <typename Monitor>
void feed(benchmark::State& state, Monitor& monitor) {
  Traffic traffic(static_cast<std::size_t>(state.range(0)));
  Stamp stamp{0};
  for (auto _ : state) {
    state.PauseTiming();
    const auto& objects = traffic.next();
    state.ResumeTiming();
    benchmark::DoNotOptimize(monitor.update(stamp += period, objects));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void objectsInZones(benchmark::State& state) {
  monitor::ObjectMonitor objects(detector());
  feed(state, objects);
}
BENCHMARK(objectsInZones)->Arg(1'000)->Unit(benchmark::kMillisecond);

void objectsOverLines(benchmark::State& state) {
  std::map<std::string, detection::CounterLine> lines;
  for (int i = 0; i < state.range(1); ++i) {
    const double bearing = 2.0 * std::numbers::pi * i / static_cast<double>(state.range(1));
    const std::string name = numbered('L', i);
    lines.emplace(name, detection::CounterLine(name, {10.0 * std::cos(bearing), 10.0 * std::sin(bearing)},
                                               {40.0 * std::cos(bearing), 40.0 * std::sin(bearing)}, nullptr,
                                               detection::CounterLineDirectionType::ON));
  }
  monitor::LineCounter counter(lines);
  feed(state, counter);
}
BENCHMARK(objectsOverLines)->Args({1'000, 32})->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
