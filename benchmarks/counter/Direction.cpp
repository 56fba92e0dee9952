// How long it takes to tell on which side of a counter line a point lies. A host asks for every tracked
// object, line and frame. So with tracing off, as here, the answer must take little longer than its
// arithmetic.

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>

#include <benchmark/benchmark.h>

#include <filter/detection/CounterLine.h>

namespace {

using orvantis::filter::detection::CounterLine;
using orvantis::filter::detection::CounterLineDirectionType;

using Point = CounterLine::point;
using SinglePoint = Eigen::Matrix<float, 2, 1>;

constexpr std::size_t numPoints = 1024;

CounterLine kerb() {
  return {"kerb", Point(-10.0, 2.5), Point(12.0, 3.5), nullptr, CounterLineDirectionType::LEFT};
}

template <typename AnyPoint, typename Coordinate>
std::array<AnyPoint, numPoints> randomPoints() {
  std::mt19937 random(1);
  std::array<AnyPoint, numPoints> points;
  for (AnyPoint& point : points) {
    const auto next = [&random] {
      return static_cast<Coordinate>(random() % 40001) / static_cast<Coordinate>(1000) -
             static_cast<Coordinate>(20);
    };
    const Coordinate x = next();
    point = AnyPoint(x, next());
  }
  return points;
}

// The points differ, so that a processor can predict the branch on the side no better than for a host.
template <typename AnyPoint, typename Coordinate>
void askForSides(benchmark::State& state) {
  const CounterLine line = kerb();
  const auto points = randomPoints<AnyPoint, Coordinate>();
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(line.direction(points[i]));
    i = (i + 1) % numPoints;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

void directionOfADoublePoint(benchmark::State& state) {
  askForSides<Point, double>(state);
}
void directionOfASinglePoint(benchmark::State& state) {
  askForSides<SinglePoint, float>(state);
}

// The same arithmetic alone, as the lower bound.
void crossProductAlone(benchmark::State& state) {
  const CounterLine line = kerb();
  const auto points = randomPoints<Point, double>();
  const Point& first = line.getPoints()[0];
  const Point& second = line.getPoints()[1];
  std::size_t i = 0;
  for (auto _ : state) {
    const Point& p = points[i];
    const double cross =
        (second.x() - first.x()) * (p.y() - first.y()) - (second.y() - first.y()) * (p.x() - first.x());
    benchmark::DoNotOptimize(static_cast<float>(cross) > 0.0F);
    i = (i + 1) % numPoints;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

BENCHMARK(crossProductAlone);
BENCHMARK(directionOfADoublePoint);
BENCHMARK(directionOfASinglePoint);

}  // namespace

BENCHMARK_MAIN();
