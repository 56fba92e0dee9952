#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <filter/monitor/LineCounter.h>
#include <filter/monitor/ObjectMonitor.h>
#include <filter/monitor/ZoneMonitor.h>

#include "Frames.h"

// The monitors are values: copies go on independently, and what was moved from can still be used.
namespace orvantis::filter::monitor::testing {
namespace {

static_assert(std::is_nothrow_move_constructible_v<LineCounter>);
static_assert(std::is_nothrow_move_assignable_v<LineCounter>);
static_assert(std::is_nothrow_move_constructible_v<ObjectMonitor>);
static_assert(std::is_nothrow_move_assignable_v<ObjectMonitor>);

LineCounter counterOnXAxis() {
  return LineCounter(oneLine({0.0, 0.0}, {10.0, 0.0}));
}

TEST(LineCounterValues, CopiesGoOnIndependently) {
  LineCounter counter = counterOnXAxis();
  counter.update(ms(0), {box(1, 4, 2), box(2, 6, 2)});
  LineCounter copy = counter;
  EXPECT_EQ(copy.update(ms(100), {box(1, 4, -2)}).size(), 1U);
  EXPECT_EQ(counter.tallies()[0].crossings.toRight, 0U);
  EXPECT_EQ(counter.explain("L", 1).verdict, CrossingVerdict::NotOver);
  EXPECT_EQ(counter.update(ms(50), {box(2, 6, -2), box(1, 4, -2)}).size(), 2U);
  copy = counter;
  EXPECT_EQ(copy.tallies()[0].crossings.toRight, 2U);
  EXPECT_EQ(copy.update(ms(60), {box(1, 4, 2), box(2, 6, 2)}).size(), 2U);
  const LineCounter& itself = copy;
  copy = itself;
  EXPECT_EQ(copy.tallies()[0].crossings.toLeft, 2U);
}

// NOLINTBEGIN(bugprone-use-after-move)
TEST(LineCounterValues, OneThatWasMovedFromGoesOnWithoutLines) {
  LineCounter counter = counterOnXAxis();
  counter.update(ms(0), {box(1, 4, 2)});
  LineCounter moved = std::move(counter);
  EXPECT_EQ(counter.numTracks(), 0U);
  EXPECT_TRUE(counter.tallies().empty());
  EXPECT_TRUE(counter.directions("L").sides.empty());
  EXPECT_TRUE(counter.onLine("L").empty());
  EXPECT_EQ(counter.explain("L", 1).verdict, CrossingVerdict::NoSuchLine);
  const LineCounter copy = counter;
  EXPECT_EQ(copy.numTracks(), 0U);
  counter.resetTallies();
  counter.advance(ms(-5));
  EXPECT_TRUE(counter.update(ms(-5), {box(1, 4, 2)}).empty());
  EXPECT_EQ(counter.numTracks(), 1U);
  EXPECT_EQ(moved.update(ms(100), {box(1, 4, -2)}).size(), 1U);
  counter = std::move(moved);
  EXPECT_EQ(counter.tallies()[0].crossings.toRight, 1U);
  EXPECT_EQ(moved.numTracks(), 0U);
}

TEST(ObjectMonitorValues, CopiesGoOnIndependently) {
  ObjectMonitor monitor(detectorWithGate());
  monitor.update(ms(0), {box(1, 5, 5), box(2, 5, 5)});
  ObjectMonitor copy = monitor;
  EXPECT_EQ(copy.update(ms(100), {box(1, 50, 5)}).events.size(), 1U);
  EXPECT_EQ(copy.occupants(0, 0).size(), 1U);
  EXPECT_EQ(monitor.occupants(0, 0).size(), 2U);
  EXPECT_EQ(monitor.update(ms(50), {box(2, 50, 5)}).events.size(), 1U);
  copy = monitor;
  ASSERT_EQ(copy.occupants(0, 0).size(), 1U);
  EXPECT_EQ(copy.occupants(0, 0)[0].id, 1);
  EXPECT_EQ(copy.reconfigure(ZoneDetector()).size(), 1U);
  EXPECT_EQ(monitor.update(ms(60), {}).inside[0], 1U);
}

TEST(ObjectMonitorValues, OneThatWasMovedFromGoesOnWithoutZones) {
  ObjectMonitor monitor(detectorWithGate());
  monitor.update(ms(0), {box(1, 5, 5)});
  ObjectMonitor moved = std::move(monitor);
  EXPECT_EQ(monitor.numTracks(), 0U);
  EXPECT_TRUE(monitor.occupants(0, 0).empty());
  EXPECT_TRUE(monitor.advance(ms(-5)).empty());
  const ObjectFrame frame = monitor.update(ms(-5), {box(1, 5, 5)});
  EXPECT_EQ(frame.zones, (std::vector<std::uint32_t>{0}));
  EXPECT_TRUE(frame.events.empty());
  EXPECT_EQ(moved.update(ms(100), {box(1, 50, 5)}).events.size(), 1U);
  ObjectMonitor taken(detectorWithGate());
  ObjectMonitor(std::move(taken));
  EXPECT_TRUE(taken.reconfigure(detectorWithGate()).empty());
  EXPECT_EQ(taken.update(ms(0), {box(1, 5, 5)}).events.size(), 1U);
}

TEST(ZoneMonitorValues, OneThatWasMovedFromGoesOnAsItWas) {
  ZoneMonitor monitor(detectorWithGate());
  ZoneMonitor moved = std::move(monitor);
  EXPECT_EQ(monitor.update(ms(0), inGate(3)).counts[0], 3U);
  EXPECT_EQ(moved.update(ms(0), inGate(4)).counts[0], 4U);
}
// NOLINTEND(bugprone-use-after-move)

}  // namespace
}  // namespace orvantis::filter::monitor::testing
