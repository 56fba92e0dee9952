#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>
#include <hwy/highway.h>
#include <unistd.h>

#include "classify/Clouds.h"
#include "classify/Contestants.h"
#include "classify/Sites.h"
#include "classify/ZoneIndex.h"

namespace orvantis::benchmarks {
namespace {

using filter::classify::PointsView;
using filter::classify::ZoneCounts;
using filter::classify::ZoneIndex;
using filter::detection::ZoneDetector;
using Run = std::function<void()>;

constexpr std::size_t million = 1000000;
// The slow contestants are timed on a part of the cloud, and compared on it.
constexpr std::size_t slowPart = 20000;

std::map<std::string, double> nanosecondsPerPoint;

// Keeps the least time of each benchmark's repetitions for the ratios at the end: the others had more
// disturbance from outside, not less work.
class Reporter : public benchmark::ConsoleReporter {
 public:
  // Colours are for terminals: a file would get their codes.
  Reporter() : ConsoleReporter(isatty(STDOUT_FILENO) != 0 ? OO_Defaults : OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      const auto rate = run.counters.find("points");
      if (!run.error_occurred && run.run_type == Run::RT_Iteration && rate != run.counters.end()) {
        const double time = 1.0e9 / rate->second.value;
        const auto [entry, isNew] = nanosecondsPerPoint.try_emplace(run.run_name.function_name, time);
        entry->second = std::min(entry->second, time);
      }
    }
  }
};

benchmark::internal::Benchmark* add(const std::string& name, std::size_t numPoints, const Run& run) {
  return benchmark::RegisterBenchmark(name.c_str(),
                                      [numPoints, run](benchmark::State& state) {
                                        for (auto _ : state) {
                                          run();
                                        }
                                        state.counters["points"] =
                                            benchmark::Counter(static_cast<double>(numPoints),
                                                               benchmark::Counter::kIsIterationInvariantRate);
                                      })
      ->Unit(benchmark::kMicrosecond);
}

[[noreturn]] void refuse(const std::string& name) {
  std::cerr << name << " gives other masks than the zones themselves\n";
  std::exit(EXIT_FAILURE);
}

using Masks = std::vector<std::uint64_t>;

void compare(const std::string& name, const Masks& masks, const Masks& expected, std::size_t size) {
  if (!std::equal(masks.begin(), masks.begin() + static_cast<std::ptrdiff_t>(size), expected.begin())) {
    refuse(name);
  }
}

// One site with one cloud, and what its benchmarks share.
struct Setting {
  Setting(ZoneDetector zones, Cloud points)
      : detector(std::move(zones)),
        index(detector),
        cloud(std::move(points)),
        masks(cloud.size()),
        expected(cloud.size()) {
    index.classify(cloud.view(), expected.data());
    Masks byZones(std::min(slowPart, cloud.size()));
    perZoneCalls(detector)->run(cloud, byZones.size(), byZones.data());
    compare("The classifier", byZones, expected, byZones.size());
  }

  ZoneDetector detector;
  ZoneIndex index;
  Cloud cloud;
  Masks masks;
  Masks expected;
};
using SharedSetting = std::shared_ptr<Setting>;

SharedSetting setting(ZoneDetector detector, Cloud cloud) {
  return std::make_shared<Setting>(std::move(detector), std::move(cloud));
}

void addClassifier(const std::string& name, const SharedSetting& s) {
  add(name, s->cloud.size(), [s] { s->index.classify(s->cloud.view(), s->masks.data()); });
}

void addContestant(const std::string& name, const SharedSetting& s, std::unique_ptr<Contestant> contestant,
                   std::size_t size, bool isCompared = true) {
  const std::shared_ptr<Contestant> shared = std::move(contestant);
  shared->run(s->cloud, size, s->masks.data());
  if (isCompared) {
    compare(name, s->masks, s->expected, size);
  }
  add(name, size, [s, shared, size] { shared->run(s->cloud, size, s->masks.data()); });
}

void select(std::int64_t target) {
  hwy::SetSupportedTargetsForTest(target);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

void addTargets(const std::string& name, const SharedSetting& s) {
  for (std::int64_t rest = hwy::SupportedTargets() & HWY_TARGETS; rest != 0; rest &= rest - 1) {
    const std::int64_t target = rest & -rest;
    add(name + hwy::TargetName(target), s->cloud.size(), [s, target] {
      select(target);
      s->index.classify(s->cloud.view(), s->masks.data());
      select(0);
    });
  }
}

template <typename Real>
void addLayout(const std::string& name, const SharedSetting& s, std::size_t stride) {
  const auto bytes = std::make_shared<std::vector<unsigned char>>(stride * s->cloud.size());
  for (std::size_t i = 0; i < s->cloud.size(); ++i) {
    const Real record[] = {static_cast<Real>(s->cloud.x[i]), static_cast<Real>(s->cloud.y[i]),
                           static_cast<Real>(s->cloud.z[i])};
    std::copy_n(reinterpret_cast<const unsigned char*>(record), sizeof(record), bytes->data() + i * stride);
  }
  add(name, s->cloud.size(), [s, bytes, stride] {
    s->index.classify(PointsView<Real>::interleaved(bytes->data(), stride, s->cloud.size()), s->masks.data());
  });
}

void addDoubles(const std::string& name, const SharedSetting& s) {
  const auto columns = std::make_shared<std::vector<double>>();
  for (const std::vector<float>* column : {&s->cloud.x, &s->cloud.y, &s->cloud.z}) {
    columns->insert(columns->end(), column->begin(), column->end());
  }
  add(name, s->cloud.size(), [s, columns] {
    const std::size_t size = s->cloud.size();
    const double* x = columns->data();
    s->index.classify(PointsView<double>::separate(x, x + size, x + 2 * size, size), s->masks.data());
  });
}

void addCounts(const std::string& name, const SharedSetting& s) {
  add(name + "without masks", s->cloud.size(), [s] {
    const ZoneCounts counts = s->index.count(s->cloud.view(), nullptr);
    benchmark::DoNotOptimize(counts);
  });
  add(name + "with masks", s->cloud.size(), [s] {
    const ZoneCounts counts = s->index.count(s->cloud.view(), s->masks.data());
    benchmark::DoNotOptimize(counts);
  });
}

void addThreads(const std::string& name, const SharedSetting& s) {
  add(name, s->cloud.size(), [s] {
    const std::size_t half = s->cloud.size() / 2;
    const auto part = [&](std::size_t first, std::size_t size) {
      const Cloud& cloud = s->cloud;
      s->index.classify(PointsView<float>::separate(cloud.x.data() + first, cloud.y.data() + first,
                                                    cloud.z.data() + first, size),
                        s->masks.data() + first);
    };
    std::thread other(part, half, s->cloud.size() - half);
    part(0, half);
    other.join();
  })->UseRealTime();
}

void addBuild(const std::string& name, const ZoneDetector& detector) {
  const auto shared = std::make_shared<ZoneDetector>(detector);
  add(name, 1, [shared] {
    const ZoneIndex index(*shared);
    benchmark::DoNotOptimize(index.bytes());
  });
  std::cout << name << ": " << ZoneIndex(detector).bytes() << " bytes of tables\n";
}

void addRealCloud(const std::string& name, Cloud cloud) {
  const SharedSetting s = setting(site(Shapes::Mixed, 56), std::move(cloud));
  addContestant(name + "/per-zone calls", s, perZoneCalls(s->detector), slowPart);
  addContestant(name + "/read and write", s, readAndWrite(), s->cloud.size(), false);
  addClassifier(name + "/classify", s);
  addCounts(name + "/count ", s);
}

// Each frame by itself, which stays in the cache, and all of them again and again up to a million points,
// which come from memory as those of a recording do.
void addRealFrames() {
  const char* paths = std::getenv("ORVANTIS_FRAMES");
  std::string rest = paths != nullptr ? paths : "";
  std::vector<Cloud> frames;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    Cloud frame = readFrame(rest.substr(0, end));
    rest.erase(0, end + 1);
    if (frame.size() == 0) {
      std::cout << "A file of ORVANTIS_FRAMES cannot be read; left out\n";
      continue;
    }
    addRealCloud("frame " + std::to_string(frames.size()), frame);
    frames.push_back(std::move(frame));
  }
  if (frames.empty()) {
    return;
  }
  Cloud recording;
  for (std::size_t i = 0; recording.size() < million; ++i) {
    const Cloud& frame = frames[i % frames.size()];
    for (std::size_t k = 0; k < frame.size(); ++k) {
      recording.append(frame.x[k], frame.y[k], frame.z[k]);
    }
  }
  addRealCloud("recording", std::move(recording));
}

void addAll() {
  for (const auto& [name, shapes] :
       {std::pair{"16-gons/", Shapes::Polygons}, std::pair{"mixed/", Shapes::Mixed}}) {
    const std::string prefix = name;
    const SharedSetting s = setting(site(shapes, 56), uniformCloud(million, 100.0));
    addContestant(prefix + "per-zone calls", s, perZoneCalls(s->detector), slowPart);
    addContestant(prefix + "boxed calls", s, boxedCalls(s->detector), slowPart);
    if (shapes == Shapes::Polygons) {
      addContestant(prefix + "GEOS prepared", s, preparedGeometries(s->detector, s->cloud), slowPart);
    }
    addContestant(prefix + "read and write", s, readAndWrite(), million, false);
    addClassifier(prefix + "classify", s);
    addTargets(prefix + "classify ", s);
    addCounts(prefix + "count ", s);
    addThreads(prefix + "two threads", s);
    addDoubles(prefix + "float64", s);
    addLayout<float>(prefix + "stride 12", s, 12);
    addLayout<float>(prefix + "stride 16", s, 16);
    addLayout<float>(prefix + "stride 32", s, 32);
    addBuild(prefix + "build", s->detector);
    addClassifier(prefix + "frame of 10000", setting(s->detector, uniformCloud(10000, 100.0)));
    addClassifier(prefix + "rings", setting(s->detector, ringCloud(million)));
    addClassifier(prefix + "rings shuffled", setting(s->detector, shuffled(ringCloud(million))));
    addClassifier(prefix + "20% NaN", setting(s->detector, withNaN(uniformCloud(million, 100.0), 5)));
  }
  addClassifier("stacked stars", setting(stackedStars(), uniformCloud(million, 10.0)));
  addBuild("stacked stars/build", stackedStars());
  for (const int numZones : {1, 2, 4, 8, 16, 32, 56}) {
    addClassifier("zones " + std::to_string(numZones),
                  setting(site(Shapes::Mixed, numZones), uniformCloud(million, 100.0)));
  }
  for (const int numVertices : {3, 4, 8, 16}) {
    addClassifier("vertices " + std::to_string(numVertices),
                  setting(site(Shapes::Polygons, 56, numVertices), uniformCloud(million, 100.0)));
  }
  for (const std::size_t size : {std::size_t{100}, std::size_t{1000}, std::size_t{100000}, 10 * million}) {
    addClassifier("points " + std::to_string(size),
                  setting(site(Shapes::Mixed, 56), uniformCloud(size, 100.0)));
  }
  addClassifier("site of 1 km", setting(site(Shapes::Mixed, 56, 16, 1000.0), uniformCloud(million, 1000.0)));
  addRealFrames();
}

void printRatio(const std::string& slower, const std::string& faster) {
  const auto a = nanosecondsPerPoint.find(slower);
  const auto b = nanosecondsPerPoint.find(faster);
  if (a != nanosecondsPerPoint.end() && b != nanosecondsPerPoint.end()) {
    std::printf("%-32s / %-32s %9.2f\n", slower.c_str(), faster.c_str(), a->second / b->second);
  }
}

void printRatios() {
  std::printf("\nRatios of the times above\n");
  for (const std::string prefix : {"16-gons/", "mixed/", "frame 0/", "frame 1/", "recording/"}) {
    const std::string classify = prefix + "classify";
    printRatio(prefix + "per-zone calls", classify);
    printRatio(prefix + "boxed calls", classify);
    printRatio(prefix + "GEOS prepared", classify);
    printRatio(classify, prefix + "read and write");
    printRatio(classify + " AVX2", classify + " AVX3");
    printRatio(classify + " SSE4", classify + " AVX3");
    printRatio(classify + " SSSE3", classify + " AVX3");
    printRatio(classify + " SCALAR", classify + " AVX3");
    printRatio(prefix + "count without masks", classify);
    printRatio(prefix + "two threads", classify);
  }
}

}  // namespace
}  // namespace orvantis::benchmarks

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return EXIT_FAILURE;
  }
  orvantis::benchmarks::addAll();
  orvantis::benchmarks::Reporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  orvantis::benchmarks::printRatios();
  return EXIT_SUCCESS;
}
