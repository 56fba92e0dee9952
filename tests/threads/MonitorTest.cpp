#include <cstdint>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/CounterLines.h>
#include <filter/monitor/LineCounter.h>
#include <filter/monitor/ObjectMonitor.h>
#include <filter/monitor/ZoneMonitor.h>

#include "AtOnce.h"
#include "Site.h"

namespace orvantis::testing {
namespace {

using namespace filter::detection;
using namespace filter::monitor;

constexpr int numFrames = 30;

Stamp stampOf(int frame) {
  return frame * std::chrono::milliseconds(100);
}

// Every other frame has points.
Points pointsOf(int frame) {
  return frame % 2 == 0 ? gridOfPoints() : Points();
}

// Two objects that cross the site from left to right and back.
std::vector<TrackedObject> objectsOf(int frame) {
  const double x = frame <= numFrames / 2 ? frame - 8.0 : numFrames - frame - 8.0;
  return {{1, core::State(x, 0.3, 2.0, 1.0, 0.1 * frame), 0.0, 1.5, "car"},
          {2, core::State(-x, 1.7, 0.5, 0.5, 0.0), 0.0, 1.8, "person"}};
}

// What happens on the way through all frames, as one text.
std::string storyOf(ZoneMonitor monitor) {
  std::ostringstream text;
  for (int i = 0; i < numFrames; ++i) {
    const PointFrame frame = monitor.update(stampOf(i), viewOf(pointsOf(i)));
    for (const std::uint64_t count : frame.counts) {
      text << count << ' ';
    }
    text << frame.excluded << ' ' << frame.events.size() << '\n';
  }
  return text.str();
}

std::string storyOf(ObjectMonitor monitor) {
  std::ostringstream text;
  for (int i = 0; i < numFrames; ++i) {
    for (const ObjectEvent& event : monitor.update(stampOf(i), objectsOf(i)).events) {
      text << i << ' ' << static_cast<int>(event.kind) << ' ' << event.id << ' ' << event.slot.zoneName << ' '
           << event.dwell.count() << '\n';
    }
  }
  return text.str();
}

std::string storyOf(LineCounter counter) {
  std::ostringstream text;
  for (int i = 0; i < numFrames; ++i) {
    for (const Crossing& crossing : counter.update(stampOf(i), objectsOf(i))) {
      text << i << ' ' << crossing.line << ' ' << crossing.id << ' ' << crossing.met.count() << '\n';
    }
  }
  return text.str();
}

std::map<std::string, CounterLine> lines() {
  CounterLines registry;
  registry.insert({"Gate", {0.1, -5.0}, {0.1, 5.0}, nullptr, CounterLineDirectionType::LEFT});
  return registry.clone();
}

TEST(MonitorAtOnce, MonitorsOfOneDetectorAreIndependent) {
  const ZoneDetector detector = detectorOfEveryShape();
  const std::string zones = storyOf(ZoneMonitor(detector));
  const std::string objects = storyOf(ObjectMonitor(detector));
  ASSERT_NE(objects, "");
  atOnce(4, [&](int) {
    EXPECT_EQ(storyOf(ZoneMonitor(detector)), zones);
    EXPECT_EQ(storyOf(ObjectMonitor(detector)), objects);
  });
}

TEST(MonitorAtOnce, CopiesOfAMonitorAreIndependent) {
  const ZoneMonitor zoneMonitor(detectorOfEveryShape());
  const ObjectMonitor objectMonitor(detectorOfEveryShape());
  const LineCounter lineCounter(lines());
  const std::string zones = storyOf(zoneMonitor);
  const std::string objects = storyOf(objectMonitor);
  const std::string crossings = storyOf(lineCounter);
  ASSERT_NE(crossings, "");
  atOnce(4, [&](int) {
    EXPECT_EQ(storyOf(zoneMonitor), zones);
    EXPECT_EQ(storyOf(objectMonitor), objects);
    EXPECT_EQ(storyOf(lineCounter), crossings);
  });
}

TEST(MonitorAtOnce, WhatIsKnownAfterAFrameIsAskedByManyThreads) {
  ZoneMonitor zoneMonitor(detectorOfEveryShape());
  ObjectMonitor objectMonitor(detectorOfEveryShape());
  LineCounter lineCounter(lines());
  const auto points = gridOfPoints();
  for (int i = 0; i < 10; ++i) {
    zoneMonitor.update(stampOf(i), viewOf(points));
    objectMonitor.update(stampOf(i), objectsOf(i));
    lineCounter.update(stampOf(i), objectsOf(i));
  }
  const auto answers = [&] {
    std::ostringstream text;
    for (const ZoneExplanation& zone : zoneMonitor.explain(viewOf(points))) {
      text << zone.slot.zoneName << ' ' << zone.counted << ' ' << zone.taken << ' ' << zone.isOccupied
           << '\n';
    }
    for (int field = 0; field < 2; ++field) {
      for (int zone = 0; zone < 3; ++zone) {
        for (const Occupant& occupant : objectMonitor.occupants(field, zone)) {
          text << field << ' ' << zone << ' ' << occupant.id << '\n';
        }
      }
    }
    text << objectMonitor.numTracks() << lineCounter.numTracks()
         << lineCounter.tallies()[0].crossings.toRight;
    text << static_cast<int>(lineCounter.explain("Gate", 1).verdict) << lineCounter.onLine("Gate").size()
         << lineCounter.directions("Gate").sides.size();
    return text.str();
  };
  const std::string expected = answers();
  atOnce(4, [&](int) {
    for (int round = 0; round < 10; ++round) {
      EXPECT_EQ(answers(), expected);
    }
  });
}

}  // namespace
}  // namespace orvantis::testing
