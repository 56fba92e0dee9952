#include <cstdint>
#include <map>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/monitor/LineCounter.h>
#include <filter/monitor/ObjectMonitor.h>

#include "Frames.h"
#include "support/AllocationCounter.h"

// What the monitors keep of a track, what a frame takes, and what happens where there is nothing left.
namespace orvantis::filter::monitor::testing {
namespace {

using orvantis::testing::AllocationCounter;
using orvantis::testing::FailingAllocation;

constexpr int numLines = 30;

// Ten units apart, one above the other, from x = 0 to 10.
std::map<std::string, detection::CounterLine> ladder(int count) {
  std::map<std::string, detection::CounterLine> lines;
  for (int i = 0; i < count; ++i) {
    const std::string name = "L" + std::to_string(i);
    lines.emplace(name, detection::CounterLine(name, {0.0, 10.0 * i}, {10.0, 10.0 * i}, nullptr,
                                               detection::CounterLineDirectionType::LEFT));
  }
  return lines;
}

std::vector<TrackedObject> crowd(std::int32_t size, double y) {
  std::vector<TrackedObject> objects;
  for (std::int32_t id = 0; id < size; ++id) {
    objects.push_back(box(id, 5.0, y, "car"));
  }
  return objects;
}

// Of all that a value holds, as its copy asks for it.
template <typename Value>
std::size_t bytesOf(const Value& value) {
  const AllocationCounter allocations;
  const Value copy = value;
  return allocations.bytes();
}

TEST(LineCounterMemory, OfATrackIsAFewBytesForEachLine) {
  const auto bytesOfCrowd = [](int lines, const std::vector<double>& heights) {
    constexpr std::int32_t size = 1'000;
    LineCounter counter(ladder(lines));
    Stamp stamp{0};
    const std::size_t before = bytesOf(counter);
    for (const double y : heights) {
      counter.update(stamp += ms(100), crowd(size, y));
    }
    counter.resetTallies();  // the ids of those that crossed are the tallies' own
    return (bytesOf(counter) - before) / size;
  };
  const std::size_t aside = bytesOfCrowd(0, {5.0});
  EXPECT_LE(bytesOfCrowd(numLines, {5.0}), aside + numLines * 4);
  // On a line, over a line and not clear of it, and counted.
  EXPECT_LE(bytesOfCrowd(numLines, {5.0, 0.2}), aside + numLines * 4);
  EXPECT_LE(bytesOfCrowd(numLines, {5.0, -0.2}), aside + numLines * 4 + 64);
  EXPECT_LE(bytesOfCrowd(numLines, {5.0, -5.0}), aside + numLines * 4 + 64);
  // Over half of all lines.
  EXPECT_LE(bytesOfCrowd(numLines, {145.0, -5.0}), aside + numLines * 64);
}

TEST(LineCounterMemory, AFrameOfKnownBoxesThatMeetNothingTakesNone) {
  LineCounter counter(ladder(numLines));
  const auto objects = crowd(100, 5.0);
  counter.update(ms(0), objects);
  counter.update(ms(1), objects);
  const AllocationCounter allocations;
  counter.update(ms(2), objects);
  EXPECT_EQ(allocations.count(), 0U);
}

TEST(ObjectMonitorMemory, AFrameOfKnownBoxesThatStayTakesThatOfItsResult) {
  ObjectMonitor monitor(detectorWithGate());
  const auto objects = crowd(100, 5.0);
  monitor.update(ms(0), objects);
  const AllocationCounter allocations;
  monitor.update(ms(1), objects);
  EXPECT_EQ(allocations.count(), 1U);
}

// Lets every allocation of a frame fail in turn, and goes on afterwards.
template <typename Monitor, typename Check>
void starve(const Monitor& monitor, const std::vector<TrackedObject>& objects, const Check& check) {
  bool isStarved = true;
  for (std::size_t n = 0; isStarved; ++n) {
    ASSERT_LT(n, 1'000U);
    Monitor starved = monitor;
    {
      const FailingAllocation failure(n);
      try {
        starved.update(ms(100), objects);
      } catch (const std::bad_alloc&) {
        EXPECT_TRUE(failure.happened());
      }
      isStarved = failure.happened();
    }
    starved.update(ms(200), objects);
    check(starved);
    starved.update(ms(300), {});
    starved.advance(ms(9'000));
    EXPECT_EQ(starved.numTracks(), 0U);
  }
}

TEST(LineCounterMemory, WhereThereIsNoneLeftNothingIsBroken) {
  LineCounter counter(ladder(3));
  counter.update(ms(0), {box(1, 5, 5), box(2, 5, 15)});
  std::vector<TrackedObject> objects = {box(2, 5, -5, "a class with a long name, to be kept apart")};
  objects.push_back(box(9, 5, 5));
  objects.push_back(box(1, 5, -0.2));
  starve(counter, objects, [](const LineCounter& starved) {
    EXPECT_EQ(starved.numTracks(), 3U);
    for (const char* line : {"L0", "L1", "L2"}) {
      for (const std::int32_t id : {1, 2, 9}) {
        EXPECT_NE(starved.explain(line, id).verdict, CrossingVerdict::NotSeen);
      }
    }
  });
}

TEST(ObjectMonitorMemory, WhereThereIsNoneLeftTheNumbersInsideAreThoseOfTheTracks) {
  ObjectMonitor monitor(detectorWithGate());
  monitor.update(ms(0), {box(1, 5, 5), box(2, 50, 5), box(3, 5, 5)});
  const std::vector<TrackedObject> objects = {box(3, 50, 5), box(9, 5, 5, "a class with a long name"),
                                              box(1, 50, 5), box(2, 5, 5)};
  starve(monitor, objects, [](ObjectMonitor& starved) {
    EXPECT_EQ(starved.update(ms(250), {}).inside[0], 2U);
    EXPECT_EQ(starved.occupants(0, 0).size(), 2U);
  });
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
