// Times the batch classifier and other ways to compute the same masks. Before it times anything, it compares
// the result with the answers of the zones, for every point and every kind of instructions that the processor
// has.
//
//   classifier_benchmark [--seed=N]... [options of Google Benchmark]
//
// Each seed gives a set of the dense sites; the default is 1. ORVANTIS_FRAMES has the names of files of
// float32 records x, y, z, intensity, separated by colons.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <hwy/highway.h>

#include "Report.h"
#include "classify/Clouds.h"
#include "classify/Contestants.h"
#include "classify/Records.h"
#include "classify/Setting.h"
#include "classify/Sites.h"

namespace orvantis::benchmarks {
namespace {

using filter::classify::PointsView;
using filter::classify::ZoneIndex;
using filter::detection::ZoneDetector;
using Run = std::function<void()>;

constexpr std::size_t million = 1000000;
// The slow contestants get only a part of the cloud.
constexpr std::size_t slowPart = 20000;

// `prepare` is called once, before the first repetition: it checks what will be timed.
benchmark::internal::Benchmark* add(const std::string& name, std::size_t numPoints,
                                    const std::function<Run()>& prepare) {
  const auto run = std::make_shared<Run>();
  return benchmark::RegisterBenchmark(name.c_str(),
                                      [numPoints, prepare, run](benchmark::State& state) {
                                        if (!*run) {
                                          *run = prepare();
                                        }
                                        for (auto _ : state) {
                                          (*run)();
                                        }
                                        state.counters["points"] =
                                            benchmark::Counter(static_cast<double>(numPoints),
                                                               benchmark::Counter::kIsIterationInvariantRate);
                                      })
      ->Unit(benchmark::kMicrosecond);
}

SharedSetting setting(std::function<ZoneDetector()> detector, std::function<Cloud()> cloud) {
  return std::make_shared<LazySetting>([detector = std::move(detector), cloud = std::move(cloud)] {
    return std::make_unique<Setting>(detector(), cloud());
  });
}

template <typename Real>
void checkAll(const std::string& name, Setting& s, const PointsView<Real>& points) {
  for (const std::int64_t target : Target::all()) {
    const Target only(target);
    const std::string where = name + ", " + hwy::TargetName(target);
    std::fill(s.masks.begin(), s.masks.end(), ~std::uint64_t{0});
    s.index.classify(points, s.masks.data());
    checkMasks(where, s, s.masks);
    checkCounts(where, s, s.index.count(points, nullptr));
    std::fill(s.masks.begin(), s.masks.end(), ~std::uint64_t{0});
    checkCounts(where, s, s.index.count(points, s.masks.data()));
    checkMasks(where + ", with counts", s, s.masks);
  }
}

// One layout, and a loop over the same memory.
template <typename Real, std::size_t stride>
void addLayout(const std::string& prefix, const SharedSetting& shared, std::size_t numPoints) {
  const std::string kind = sizeof(Real) == sizeof(float) ? "float32 " : "float64 ";
  const std::string name = prefix + kind + (stride == 0 ? "arrays" : "records of " + std::to_string(stride));
  const auto records = std::make_shared<std::unique_ptr<Records<Real>>>();
  const auto view = [shared, records] {
    if (!*records) {
      *records = std::make_unique<Records<Real>>(shared->get().cloud, stride);
    }
    return (*records)->view();
  };
  add(name, numPoints, [=] {
    Setting& s = shared->get();
    checkAll<Real>(name, s, view());
    return [&s, points = view()] { s.index.classify(points, s.masks.data()); };
  });
  add(name + ", loop", numPoints, [=] {
    Setting& s = shared->get();
    return [&s, points = view()] {
      readAndWrite<Real, stride>(points, s.masks.data());
      benchmark::ClobberMemory();
    };
  });
  addRatio(name, name + ", loop");
}

void addClassifier(const std::string& name, const SharedSetting& shared, std::size_t numPoints) {
  add(name, numPoints, [=] {
    Setting& s = shared->get();
    checkAll<float>(name, s, s.cloud.view());
    return [&s] { s.index.classify(s.cloud.view(), s.masks.data()); };
  });
}

using MakeContestant = std::function<std::unique_ptr<Contestant>(const Setting&)>;

void addContestant(const std::string& prefix, const std::string& name, const SharedSetting& shared,
                   const MakeContestant& make) {
  add(prefix + name, slowPart, [=] {
    Setting& s = shared->get();
    const std::shared_ptr<Contestant> contestant = make(s);
    contestant->run(s.cloud, s.cloud.size(), s.masks.data());
    checkMasks(prefix + name, s, s.masks);
    return [&s, contestant] { contestant->run(s.cloud, slowPart, s.masks.data()); };
  });
  addRatio(prefix + name, prefix + "float32 arrays");
}

void addTargets(const std::string& prefix, const SharedSetting& shared, std::size_t numPoints) {
  for (const std::int64_t target : Target::all()) {
    const std::string name = prefix + hwy::TargetName(target);
    add(name, numPoints, [=] {
      Setting& s = shared->get();
      return [&s, target] {
        const Target only(target);
        s.index.classify(s.cloud.view(), s.masks.data());
      };
    });
    addRatio(name, prefix + hwy::TargetName(Target::all().front()));
  }
}

void addCounts(const std::string& prefix, const SharedSetting& shared, std::size_t numPoints) {
  for (const bool withMasks : {false, true}) {
    const std::string name = prefix + "counts with" + (withMasks ? "" : "out") + " masks";
    add(name, numPoints, [=] {
      Setting& s = shared->get();
      return [&s, withMasks] {
        benchmark::DoNotOptimize(s.index.count(s.cloud.view(), withMasks ? s.masks.data() : nullptr));
      };
    });
    addRatio(name, prefix + "float32 arrays");
  }
}

void classifyByTwo(Setting& s) {
  const std::size_t half = s.cloud.size() / 2;
  const auto part = [&](std::size_t first, std::size_t size) {
    const Cloud& cloud = s.cloud;
    s.index.classify(PointsView<float>::separate(cloud.x.data() + first, cloud.y.data() + first,
                                                 cloud.z.data() + first, size),
                     s.masks.data() + first);
  };
  std::thread other(part, half, s.cloud.size() - half);
  part(0, half);
  other.join();
}

void addThreads(const std::string& prefix, const SharedSetting& shared, std::size_t numPoints) {
  add(prefix + "two threads", numPoints, [=] {
    Setting& s = shared->get();
    classifyByTwo(s);
    checkMasks(prefix + "two threads", s, s.masks);
    return [&s] { classifyByTwo(s); };
  })->UseRealTime();
}

void addBuild(const std::string& prefix, const SharedSetting& shared) {
  add(prefix + "build", 1, [=] {
    const ZoneDetector& detector = shared->get().detector;
    std::cout << prefix << "build: " << shared->get().index.bytes() << " bytes of tables\n";
    return [&detector] { benchmark::DoNotOptimize(ZoneIndex(detector).bytes()); };
  });
}

void addLayouts(const std::string& prefix, const SharedSetting& shared, std::size_t numPoints) {
  addLayout<float, 0>(prefix, shared, numPoints);
  addLayout<float, 12>(prefix, shared, numPoints);
  addLayout<float, 16>(prefix, shared, numPoints);
  addLayout<float, 24>(prefix, shared, numPoints);
  addLayout<float, 32>(prefix, shared, numPoints);
  addLayout<float, 48>(prefix, shared, numPoints);
  addLayout<double, 0>(prefix, shared, numPoints);
  addLayout<double, 24>(prefix, shared, numPoints);
  addLayout<double, 32>(prefix, shared, numPoints);
}

// All benchmarks of a site.
void addSite(const std::string& prefix, const std::function<ZoneDetector()>& detector, double extent) {
  const SharedSetting s = setting(detector, [extent] { return uniformCloud(million, extent); });
  addContestant(prefix, "per-zone calls", s, [](const Setting& own) { return perZoneCalls(own.detector); });
  addContestant(prefix, "boxed calls", s, [](const Setting& own) { return boxedCalls(own.detector); });
  addLayouts(prefix, s, million);
  addTargets(prefix, s, million);
  addCounts(prefix, s, million);
  addThreads(prefix, s, million);
  addBuild(prefix, s);
}

void addDenseSites(std::uint64_t seed) {
  const std::pair<const char*, Arrangement> arrangements[] = {{"strewn", Arrangement::Strewn},
                                                              {"clustered", Arrangement::Clustered},
                                                              {"nested", Arrangement::Nested},
                                                              {"slivers", Arrangement::Slivers}};
  for (const auto& [name, arrangement] : arrangements) {
    addSite(
        std::string(name) + " " + std::to_string(seed) + "/",
        [arrangement = arrangement, seed] { return denseSite(arrangement, seed); }, 84.0);
  }
}

// One zone far from 55 others, with points only near the others.
void addFarZones(std::uint64_t seed) {
  const auto name = [](int distance) { return "one zone " + std::to_string(distance) + " m away"; };
  for (const int distance : {0, 500, 1000, 10000, 100000}) {
    addClassifier(
        name(distance),
        setting([=] { return siteWithFarZone(distance, seed); }, [] { return uniformCloud(million, 84.0); }),
        million);
    addRatio(name(distance), name(0));
  }
}

// Construction and one frame, as when the zones change with every frame.
void addSmallFrames(const std::string& site, const std::function<ZoneDetector()>& makeDetector, double side) {
  for (const std::size_t size :
       {std::size_t{1000}, std::size_t{2000}, std::size_t{5000}, std::size_t{10000}, std::size_t{20000}}) {
    const SharedSetting shared = setting(makeDetector, [=] { return uniformCloud(size, side); });
    const std::string name = site + ", " + std::to_string(size) + " points and the construction";
    add("classifier, " + name, size, [=] {
      Setting& s = shared->get();
      return [&s] { ZoneIndex(s.detector).classify(s.cloud.view(), s.masks.data()); };
    });
    add("boxed calls, " + name, size, [=] {
      Setting& s = shared->get();
      return [&s] { boxedCalls(s.detector)->run(s.cloud, s.cloud.size(), s.masks.data()); };
    });
    addRatio("classifier, " + name, "boxed calls, " + name);
  }
}

void addSizes() {
  const auto mixed = [](int numZones) { return [numZones] { return site(Shapes::Mixed, numZones); }; };
  const auto uniform = [](std::size_t size) { return [size] { return uniformCloud(size, 100.0); }; };
  for (const int numZones : {1, 2, 4, 8, 16, 32, mostZones}) {
    addClassifier("zones " + std::to_string(numZones), setting(mixed(numZones), uniform(million)), million);
  }
  for (const int numVertices : {3, 4, 8, 16}) {
    addClassifier("vertices " + std::to_string(numVertices),
                  setting([=] { return site(Shapes::Polygons, mostZones, numVertices); }, uniform(million)),
                  million);
  }
  for (const std::size_t size :
       {std::size_t{100}, std::size_t{1000}, std::size_t{10000}, std::size_t{100000}, 10 * million}) {
    addClassifier("points " + std::to_string(size), setting(mixed(mostZones), uniform(size)), size);
  }
}

void addOtherSites(std::uint64_t seed) {
  const auto uniform = [](double extent) { return [extent] { return uniformCloud(million, extent); }; };
  addClassifier("site of 1 km",
                setting([] { return site(Shapes::Mixed, mostZones, 16, 1000.0); }, uniform(1000.0)), million);
  addClassifier("56 zones of 1 cm", setting([=] { return tinyZones(seed); }, uniform(100.0)), million);
  const SharedSetting stars = setting(stackedStars, uniform(10.0));
  addClassifier("stacked stars", stars, million);
  addBuild("stacked stars/", stars);
  for (const auto& [name, cloud] :
       {std::pair<const char*, Cloud (*)()>{"rings", [] { return ringCloud(million); }},
        {"rings shuffled", [] { return shuffled(ringCloud(million)); }},
        {"20% NaN", [] { return withNaN(uniformCloud(million, 100.0), 5); }}}) {
    const SharedSetting s = setting([] { return site(Shapes::Mixed, mostZones); }, cloud);
    addClassifier(name, s, million);
    addCounts(std::string(name) + "/", s, million);
  }
}

// Each frame by itself, which stays in the cache, and all frames repeated up to a million points, which come
// from memory like the frames of a recording.
void addRealFrames() {
  const char* paths = std::getenv("ORVANTIS_FRAMES");
  std::string rest = paths != nullptr ? paths : "";
  std::vector<std::pair<std::string, Cloud>> clouds;
  Cloud recording;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    Cloud frame = readFrame(rest.substr(0, end));
    rest.erase(0, end + 1);
    if (frame.size() == 0) {
      std::cout << "A file of ORVANTIS_FRAMES cannot be read; it is left out\n";
      continue;
    }
    clouds.emplace_back("frame " + std::to_string(clouds.size()) + "/", std::move(frame));
  }
  for (std::size_t i = 0; !clouds.empty() && recording.size() < million; ++i) {
    const Cloud& frame = clouds[i % clouds.size()].second;
    for (std::size_t k = 0; k < frame.size(); ++k) {
      recording.append(frame.x[k], frame.y[k], frame.z[k]);
    }
  }
  if (!clouds.empty()) {
    clouds.emplace_back("recording/", std::move(recording));
  }
  for (const auto& [prefix, cloud] : clouds) {
    const SharedSetting s =
        setting([] { return site(Shapes::Mixed, mostZones); }, [cloud = cloud] { return cloud; });
    addContestant(prefix, "per-zone calls", s, [](const Setting& own) { return perZoneCalls(own.detector); });
    addLayout<float, 0>(prefix, s, cloud.size());
    addLayout<float, 16>(prefix, s, cloud.size());
    addCounts(prefix, s, cloud.size());
  }
}

void addAll(const std::vector<std::uint64_t>& seeds) {
  addSite(
      "16-gons/", [] { return site(Shapes::Polygons, mostZones); }, 100.0);
  addSite(
      "mixed/", [] { return site(Shapes::Mixed, mostZones); }, 100.0);
  const SharedSetting polygons =
      setting([] { return site(Shapes::Polygons, mostZones); }, [] { return uniformCloud(million, 100.0); });
  addContestant("16-gons/", "GEOS prepared", polygons,
                [](const Setting& own) { return preparedGeometries(own.detector, own.cloud); });
  for (const std::uint64_t seed : seeds) {
    addDenseSites(seed);
  }
  addFarZones(seeds.front());
  addOtherSites(seeds.front());
  addSmallFrames(
      "mixed", [] { return site(Shapes::Mixed, mostZones); }, 100.0);
  addSmallFrames(
      "strewn", [seed = seeds.front()] { return denseSite(Arrangement::Strewn, seed); }, 84.0);
  addSizes();
  addRealFrames();
}

// Removes the seeds from the arguments.
std::vector<std::uint64_t> takeSeeds(int& argc, char** argv) {
  const std::string option = "--seed=";
  std::vector<std::uint64_t> seeds;
  char** const end = std::remove_if(argv + 1, argv + argc, [&](const char* argument) {
    const std::string text = argument;
    const bool isSeed = text.compare(0, option.size(), option) == 0;
    if (isSeed) {
      seeds.push_back(std::stoull(text.substr(option.size())));
    }
    return isSeed;
  });
  argc = static_cast<int>(end - argv);
  if (seeds.empty()) {
    seeds.push_back(1);
  }
  return seeds;
}

}  // namespace
}  // namespace orvantis::benchmarks

int main(int argc, char** argv) {
  const std::vector<std::uint64_t> seeds = orvantis::benchmarks::takeSeeds(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return EXIT_FAILURE;
  }
  orvantis::benchmarks::addAll(seeds);
  orvantis::benchmarks::Report report;
  benchmark::RunSpecifiedBenchmarks(&report);
  orvantis::benchmarks::printRatios();
  return EXIT_SUCCESS;
}
