// How long a frame takes: points in zones, objects in zones, objects over lines, and other ways to the same
// answers. The answers are compared before anything is timed.
//
// monitor_benchmark [LAPS [SEED [TOPIC]]], where the topic is points, objects, lines or crowds

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <filter/classify/PointClassifier.h>
#include <filter/monitor/LineCounter.h>
#include <filter/monitor/ObjectMonitor.h>
#include <filter/monitor/ZoneMonitor.h>

#include "monitor/Laps.h"
#include "monitor/ObjectContestants.h"
#include "monitor/PlainLineCounter.h"
#include "monitor/Scenes.h"

namespace orvantis::benchmarks {
namespace {

using filter::classify::PointClassifier;
using filter::classify::PointsView;
using filter::detection::ZoneDetector;
using filter::monitor::Crossing;
using filter::monitor::LineCounter;
using filter::monitor::LineCounterOptions;
using filter::monitor::ObjectMonitor;
using filter::monitor::Stamp;
using filter::monitor::ZoneMonitor;
using filter::monitor::testing::PlainLineCounter;

constexpr Stamp period = std::chrono::milliseconds(100);
constexpr std::size_t numObjects = 1'000;
constexpr std::size_t numFrames = 20;

struct Arguments {
  int laps = 21;
  std::uint64_t seed = 1;
  std::string topic;  // empty: all
};

// Keeps the compiler from removing computations whose results are not used.
volatile std::uint64_t sink = 0;

void require(bool isTrue, const std::string& what) {
  if (!isTrue) {
    std::cerr << what << '\n';
    std::exit(EXIT_FAILURE);
  }
}

void racePoints(const Arguments& arguments) {
  constexpr std::size_t size = 200'000;
  constexpr std::size_t frames = 10;
  const ZoneDetector detector = ringOfOctagons();
  const std::vector<float> values = records(arguments.seed, size);
  const auto view = PointsView<float>::interleaved(values.data(), 16, size);
  const PointClassifier classifier(detector);
  ZoneMonitor zones(detector);
  Stamp stamp{0};
  require(zones.update(stamp, view).counts == classifier.count(view).inside, "ZoneMonitor counts otherwise");
  race("200,000 records of 16 bytes, 24 zones and 8 exclusion zones",
       {{"PointClassifier::count",
         [&] {
           for (std::size_t i = 0; i < frames; ++i) {
             sink = sink + classifier.count(view).inside[0];
           }
         }},
        {"ZoneMonitor::update",
         [&] {
           for (std::size_t i = 0; i < frames; ++i) {
             sink = sink + zones.update(stamp += period, view).counts[0];
           }
         }}},
       frames, 5 * arguments.laps);
}

void raceObjects(const std::string& title, const ZoneDetector& detector, bool arePolygons,
                 const Arguments& arguments) {
  const std::vector<Objects> frames = traffic(arguments.seed, numObjects, numFrames);
  const std::string approximate = "corners only (approximate)";
  std::map<std::string, std::unique_ptr<ObjectContestant>> others;
  others["each zone for each object"] = zoneByZone(detector, frames);
  others[approximate] = cornersOnly(detector, frames);
  if (arePolygons) {
    others["GEOS prepared"] = preparedGeometries(detector, frames);
  }
  ObjectMonitor monitor(detector);
  Stamp stamp{0};
  std::vector<std::uint32_t> masks;
  std::size_t numWrong = 0;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const std::vector<std::uint32_t> zones = monitor.update(stamp += period, frames[i]).zones;
    for (const auto& [name, other] : others) {
      other->run(i, masks);
      if (name != approximate) {
        require(masks == zones, "ObjectMonitor answers otherwise than " + name);
        continue;
      }
      for (std::size_t k = 0; k < masks.size(); ++k) {
        numWrong += masks[k] != zones[k] ? 1U : 0U;
      }
    }
  }
  std::vector<Contestant> contestants = {{"ObjectMonitor::update", [&] {
                                            for (const Objects& frame : frames) {
                                              sink = sink + monitor.update(stamp += period, frame).zones[0];
                                            }
                                          }}};
  for (const auto& [name, other] : others) {
    contestants.push_back({name, [&, contestant = other.get()] {
                             for (std::size_t i = 0; i < frames.size(); ++i) {
                               contestant->run(i, masks);
                               sink = sink + masks[0];
                             }
                           }});
  }
  race(title, contestants, frames.size(), arguments.laps);
  std::printf("  (corners only are wrong for %.2f %% of the objects)\n",
              100.0 * static_cast<double>(numWrong) / static_cast<double>(numObjects * frames.size()));
}

auto fieldsOf(const Crossing& crossing) {
  return std::tuple(crossing.line, crossing.from, crossing.to, crossing.id, crossing.className, crossing.met,
                    crossing.where.x(), crossing.where.y(), crossing.accepted);
}

void raceLines(int numLines, const Arguments& arguments) {
  const std::vector<Objects> frames = traffic(arguments.seed, numObjects, numFrames);
  const auto lines = spokes(numLines);
  LineCounter counter(lines);
  PlainLineCounter plain(lines, {});
  Stamp stamp{0};
  std::size_t numCrossings = 0;
  for (const Objects& frame : frames) {
    stamp += period;
    const auto crossings = counter.update(stamp, frame);
    const auto expected = plain.update(stamp, frame);
    require(crossings.size() == expected.size(), "LineCounter counts otherwise than line by line");
    for (std::size_t i = 0; i < crossings.size(); ++i) {
      require(fieldsOf(crossings[i]) == fieldsOf(expected[i]),
              "LineCounter tells otherwise than line by line");
    }
    numCrossings += crossings.size();
  }
  Stamp plainStamp = stamp;
  race("1,000 boxes, " + std::to_string(numLines) + " lines, " +
           std::to_string(numCrossings / frames.size()) + " crossings a frame",
       {{"LineCounter::update",
         [&] {
           for (const Objects& frame : frames) {
             sink = sink + counter.update(stamp += period, frame).size();
           }
         }},
        {"each line for each corner",
         [&] {
           for (const Objects& frame : frames) {
             sink = sink + plain.update(plainStamp += period, frame).size();
           }
         }}},
       frames.size(), arguments.laps);
}

// Frames with one new object each, whose tracks are never forgotten. The time of a frame must not grow with
// the tracks.
template <typename Monitor>
void raceCrowds(const std::string& title, const Monitor& monitor) {
  const auto run = [&](int frames) {
    Monitor crowded = monitor;
    Objects objects = {traffic(1, 1, 1).front().front()};
    for (int i = 0; i < frames; ++i) {
      objects[0].id = i;
      crowded.update(i * period, objects);
    }
    sink = sink + crowded.numTracks();
  };
  // The second has four times the frames of the first, so it must take four times as long.
  race(title,
       {{"10,000 frames and tracks", [&] { run(10'000); }},
        {"40,000 frames and tracks", [&] { run(40'000); }}},
       1, 5);
}

void raceAll(const Arguments& arguments) {
  const auto isAsked = [&](const char* topic) { return arguments.topic.empty() || arguments.topic == topic; };
  if (isAsked("points")) {
    racePoints(arguments);
  }
  if (isAsked("objects")) {
    raceObjects("1,000 boxes, 24 octagons", ringOfOctagons(), true, arguments);
    raceObjects("1,000 boxes, 24 rectangles, 16-gons and sectors", mixedZones(arguments.seed), false,
                arguments);
  }
  if (isAsked("lines")) {
    raceLines(32, arguments);
    raceLines(256, arguments);
  }
  if (isAsked("crowds")) {
    LineCounterOptions options;
    options.forgetAfter = std::chrono::hours(100);
    raceCrowds("One new object a frame, 24 octagons", ObjectMonitor(ringOfOctagons(), options.forgetAfter));
    raceCrowds("One new object a frame, 32 lines", LineCounter(spokes(32), options));
  }
}

}  // namespace
}  // namespace orvantis::benchmarks

int main(int argc, char** argv) {
  orvantis::benchmarks::Arguments arguments;
  if (argc > 1) {
    arguments.laps = std::max(1, std::atoi(argv[1]));
  }
  if (argc > 2) {
    arguments.seed = std::strtoull(argv[2], nullptr, 10);
  }
  if (argc > 3) {
    arguments.topic = argv[3];
  }
  orvantis::benchmarks::raceAll(arguments);
  return EXIT_SUCCESS;
}
