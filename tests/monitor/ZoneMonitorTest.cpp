#include <array>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>
#include <filter/monitor/ZoneMonitor.h>

#include "Frames.h"
#include "support/AllocationCounter.h"

namespace orvantis::filter::monitor::testing {
namespace {

using Level = ZoneDetector::TriggerZoneValue;
using detection::Point;
using detection::Polygon;
using detection::Sector;

constexpr std::size_t gate = zoneSlotIndex(0, 0);

ZoneDetector debounced(int milliseconds) {
  ZoneDetector detector = detectorWithGate();
  detector.setDebounceTime(ZoneDetector::Milliseconds(milliseconds));
  return detector;
}

TEST(ZoneMonitorCounts, EachZoneCountsItsOwnPoints) {
  ZoneDetector detector = detectorWithGate();
  detector.setZone(rectangleZone("Half", 5.0, 0.0, 20.0, 10.0), 0, 2);
  detector.setZone(rectangleZone("Far", 100.0, 0.0, 110.0, 10.0), 7, 1);
  ZoneMonitor monitor(detector);
  const PointFrame frame =
      monitor.update(ms(0), Points{{1, 1, 1}, {6, 1, 1}, {7, 1, 1}, {105, 1, 1}, {6, 1, 5}, {50, 50, 1}});
  std::array<std::uint64_t, NUM_ZONE_SLOTS> expected{};
  expected[gate] = 3;
  expected[zoneSlotIndex(0, 2)] = 2;
  expected[zoneSlotIndex(7, 1)] = 1;
  EXPECT_EQ(frame.counts, expected);
  EXPECT_EQ(frame.stamp, ms(0));
}

TEST(ZoneMonitorCounts, DoublesCountLikeFloats) {
  const std::array<double, 6> points = {5, 5, 1, 6, 6, 1};
  ZoneMonitor monitor(detectorWithGate());
  const auto view = classify::PointsView<double>::interleaved(points.data(), 3 * sizeof(double), 2);
  EXPECT_EQ(monitor.update(ms(0), view).counts[gate], 2U);
  EXPECT_EQ(monitor.explain(view).front().counted, 2U);
}

TEST(ZoneMonitorCounts, AnExclusionZoneTakesItsPoints) {
  ZoneDetector detector = detectorWithGate();
  detector.appendExclusionZone(rectangleZone("Tree", 4.0, 4.0, 6.0, 6.0));
  detector.setMinPoints(2);
  ZoneMonitor monitor(detector);
  const PointFrame frame = monitor.update(ms(0), Points{{5, 5, 1}, {5.5, 5, 1}, {1, 1, 1}});
  EXPECT_EQ(frame.counts[gate], 1U);
  EXPECT_EQ(frame.excluded, 2U);
  EXPECT_FALSE(frame.isOccupied[gate]);
}

TEST(ZoneMonitorCounts, PointsThatAreNotFiniteAreNoReturns) {
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  constexpr float inf = std::numeric_limits<float>::infinity();
  ZoneDetector detector = detectorWithGate();
  detector.appendExclusionZone(rectangleZone("All", -50.0, -50.0, 50.0, 50.0));
  ZoneMonitor monitor(detector);
  const PointFrame frame =
      monitor.update(ms(0), Points{{nan, 5, 1}, {5, nan, 1}, {5, 5, nan}, {inf, 5, 1}, {5, 5, -inf}});
  EXPECT_EQ(frame.noReturns, 5U);
  EXPECT_EQ(frame.excluded, 0U);
  EXPECT_EQ(frame.counts[gate], 0U);
}

TEST(ZoneMonitorCounts, AnEmptyFrameClears) {
  ZoneMonitor monitor(detectorWithGate());
  EXPECT_TRUE(monitor.update(ms(0), inGate(1)).isOccupied[gate]);
  EXPECT_FALSE(monitor.update(ms(1), Points{}).isOccupied[gate]);
}

TEST(ZoneMonitorStates, AZoneIsOccupiedFromTheMinimumPointsOn) {
  ZoneDetector detector = detectorWithGate();
  detector.setMinPoints(3);
  ZoneMonitor monitor(detector);
  EXPECT_FALSE(monitor.update(ms(0), inGate(2)).isOccupied[gate]);
  EXPECT_TRUE(monitor.update(ms(1), inGate(3)).isOccupied[gate]);
  EXPECT_TRUE(monitor.update(ms(2), inGate(4)).isOccupied[gate]);
  EXPECT_FALSE(monitor.update(ms(3), inGate(2)).isOccupied[gate]);
}

TEST(ZoneMonitorStates, AMinimumOfZeroOrLessIsAlwaysReached) {
  for (const int minPoints : {0, -1, std::numeric_limits<int>::min()}) {
    ZoneDetector detector = detectorWithGate();
    detector.setMinPoints(minPoints);
    ZoneMonitor monitor(detector);
    EXPECT_TRUE(monitor.update(ms(0), Points{}).isOccupied[gate]) << minPoints;
  }
}

TEST(ZoneMonitorStates, AnEmptySlotNeverTrips) {
  ZoneDetector detector = detectorWithGate();
  detector.setMinPoints(0);
  detector.setZone(std::make_shared<Zone3dBase>(), 0, 1);
  ZoneMonitor monitor(detector);
  const PointFrame frame = monitor.update(ms(0), inGate(1));
  EXPECT_EQ(frame.events.size(), 1U);
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    EXPECT_EQ(frame.isOccupied[slot], slot == gate) << slot;
    EXPECT_EQ(frame.isOccupiedNow[slot], slot == gate) << slot;
  }
  EXPECT_EQ(frame.outputs, (std::array{Level::HIGH, Level::LOW, Level::LOW}));
}

TEST(ZoneMonitorDebounce, ZeroFollowsAtOnceInBothDirections) {
  ZoneMonitor monitor(debounced(0));
  for (int i = 0; i < 6; ++i) {
    const bool isOccupied = i % 2 == 0;
    const PointFrame frame = monitor.update(ms(i), inGate(isOccupied ? 1 : 0));
    EXPECT_EQ(frame.isOccupied[gate], isOccupied);
    ASSERT_EQ(frame.events.size(), 1U);
    EXPECT_EQ(frame.events[0].isOccupied, isOccupied);
    EXPECT_EQ(frame.events[0].began, ms(i));
    EXPECT_EQ(frame.events[0].accepted, ms(i));
  }
}

// The zone holds `before` points for a second, then the others; the frame at which the state follows.
void expectChangeAfterDebounce(std::size_t before, std::size_t after) {
  const bool was = before > 0;
  for (const Duration beyond : {Duration(-1), Duration(0), Duration(1)}) {
    ZoneMonitor monitor(debounced(300));
    monitor.update(ms(0), inGate(before));
    monitor.update(ms(1000), inGate(before));
    EXPECT_EQ(monitor.update(ms(1100), inGate(after)).isOccupied[gate], was);
    EXPECT_EQ(monitor.update(ms(1250), inGate(after)).isOccupied[gate], was);
    const PointFrame frame = monitor.update(ms(1400) + beyond, inGate(after));
    const bool isReached = beyond >= Duration::zero();
    EXPECT_EQ(frame.isOccupied[gate], isReached ? !was : was) << beyond.count() << " ns beyond";
    EXPECT_EQ(frame.isOccupiedNow[gate], !was);
    ASSERT_EQ(frame.events.size(), isReached ? 1U : 0U);
    if (isReached) {
      EXPECT_EQ(frame.events[0].isOccupied, !was);
      EXPECT_EQ(frame.events[0].began, ms(1100));
      EXPECT_EQ(frame.events[0].accepted, ms(1400) + beyond);
      EXPECT_EQ(frame.events[0].slot.field, 0);
      EXPECT_EQ(frame.events[0].slot.zone, 0);
      EXPECT_EQ(frame.events[0].slot.fieldName, "Yard");
      EXPECT_EQ(frame.events[0].slot.zoneName, "Gate");
    }
  }
}

TEST(ZoneMonitorDebounce, TripsAtTheDebounceTimeAndNotOneTickBefore) {
  expectChangeAfterDebounce(0, 1);
}

TEST(ZoneMonitorDebounce, ClearsAtTheDebounceTimeAndNotOneTickBefore) {
  expectChangeAfterDebounce(1, 0);
}

TEST(ZoneMonitorDebounce, OneFrameThatAgreesStartsTheTimeOver) {
  ZoneMonitor monitor(debounced(300));
  monitor.update(ms(0), inGate(1));
  monitor.update(ms(200), inGate(1));
  monitor.update(ms(250), inGate(0));
  EXPECT_FALSE(monitor.update(ms(300), inGate(1)).isOccupied[gate]);
  EXPECT_FALSE(monitor.update(ms(599), inGate(1)).isOccupied[gate]);
  const PointFrame frame = monitor.update(ms(600), inGate(1));
  ASSERT_EQ(frame.events.size(), 1U);
  EXPECT_EQ(frame.events[0].began, ms(300));
}

TEST(ZoneMonitorDebounce, TheTimeIsTheStampsAndNotTheNumberOfFrames) {
  ZoneMonitor monitor(debounced(300));
  monitor.update(ms(0), inGate(1));
  EXPECT_TRUE(monitor.update(ms(60'000), inGate(1)).isOccupied[gate]);
}

TEST(ZoneMonitorDebounce, ANegativeTimeFollowsAtOnce) {
  ZoneMonitor monitor(debounced(-5));
  EXPECT_TRUE(monitor.update(ms(0), inGate(1)).isOccupied[gate]);
}

TEST(ZoneMonitorDebounce, ZonesAreDebouncedIndependently) {
  ZoneDetector detector = debounced(100);
  detector.setZone(rectangleZone("Far", 100.0, 0.0, 110.0, 10.0), 3, 2);
  ZoneMonitor monitor(detector);
  monitor.update(ms(0), Points{{5, 5, 1}});
  monitor.update(ms(50), Points{{5, 5, 1}, {105, 5, 1}});
  const PointFrame first = monitor.update(ms(100), Points{{5, 5, 1}, {105, 5, 1}});
  ASSERT_EQ(first.events.size(), 1U);
  EXPECT_EQ(first.events[0].slot.zoneName, "Gate");
  const PointFrame second = monitor.update(ms(150), Points{{5, 5, 1}, {105, 5, 1}});
  ASSERT_EQ(second.events.size(), 1U);
  EXPECT_EQ(second.events[0].slot.zoneName, "Far");
  EXPECT_EQ(second.events[0].slot.field, 3);
  EXPECT_EQ(second.events[0].slot.zone, 2);
}

TEST(ZoneMonitorOutputs, TheTriggerLevelSaysWhatAnOccupiedZoneDrives) {
  for (const Level level : {Level::HIGH, Level::LOW}) {
    const Level other = level == Level::HIGH ? Level::LOW : Level::HIGH;
    ZoneDetector detector = detectorWithGate();
    detector.setTriggerZone(level);
    ZoneMonitor monitor(detector);
    EXPECT_EQ(monitor.update(ms(0), inGate(0)).outputs, (std::array{other, other, other}));
    EXPECT_EQ(monitor.update(ms(1), inGate(1)).outputs, (std::array{level, other, other}));
  }
}

TEST(ZoneMonitorOutputs, TheyFollowTheReportedStateAndNotTheFrame) {
  ZoneMonitor monitor(debounced(100));
  EXPECT_EQ(monitor.update(ms(0), inGate(1)).outputs[0], Level::LOW);
  EXPECT_EQ(monitor.update(ms(100), inGate(1)).outputs[0], Level::HIGH);
  EXPECT_EQ(monitor.update(ms(199), inGate(0)).outputs[0], Level::HIGH);
}

TEST(ZoneMonitorOutputs, TheActiveFieldDrivesThem) {
  ZoneDetector detector = debounced(100);
  detector.setZone(rectangleZone("Far", 100.0, 0.0, 110.0, 10.0), 7, 1);
  detector.setEvaluationFieldIndex(7);
  ZoneMonitor monitor(detector);
  const Points inFar{{105, 5, 1}};
  monitor.update(ms(0), inFar);
  PointFrame frame = monitor.update(ms(100), inFar);
  EXPECT_EQ(frame.activeField, 7);
  EXPECT_EQ(frame.outputs, (std::array{Level::LOW, Level::HIGH, Level::LOW}));
  monitor.setActiveField(0);
  frame = monitor.update(ms(110), inFar);
  EXPECT_EQ(frame.activeField, 0);
  EXPECT_EQ(frame.outputs, (std::array{Level::LOW, Level::LOW, Level::LOW}));
  // All fields were followed meanwhile, so nothing has to be debounced again.
  monitor.setActiveField(7);
  EXPECT_EQ(monitor.update(ms(120), inFar).outputs[1], Level::HIGH);
}

TEST(ZoneMonitorOutputs, AnIndexOfNoFieldIsRefused) {
  ZoneDetector detector = detectorWithGate();
  ZoneMonitor monitor(detector);
  monitor.setActiveField(3);
  for (const int field : {8, -1}) {
    try {
      monitor.setActiveField(field);
      ADD_FAILURE() << field;
    } catch (const std::out_of_range& error) {
      EXPECT_EQ(error.what(), "The active field is " + std::to_string(field) + "; it must be 0 to 7");
    }
  }
  detector.setEvaluationFieldIndex(8);
  EXPECT_THROW(ZoneMonitor{detector}, std::out_of_range);
  EXPECT_THROW(monitor.reconfigure(detector), std::out_of_range);
  EXPECT_EQ(monitor.activeField(), 3);
}

TEST(ZoneMonitorStamps, OnesThatStandStillOrRunBackwardsAreRefusedWithBothNamed) {
  ZoneMonitor monitor(debounced(100));
  monitor.update(ms(5), inGate(1));
  for (const Stamp refused : {ms(5), ms(4), ms(-1), Stamp::min()}) {
    try {
      monitor.update(refused, inGate(0));
      ADD_FAILURE() << refused.count();
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(error.what(), "The stamp " + std::to_string(refused.count()) +
                                  " ns is not later than the last one, 5000000 ns");
    }
  }
  // The refused frames left no trace: the debounce time still counts from the first one.
  EXPECT_TRUE(monitor.update(ms(105), inGate(1)).isOccupied[gate]);
}

TEST(ZoneMonitorStamps, TheFarthestStampsAreNoTrouble) {
  ZoneMonitor monitor(debounced(100));
  monitor.update(Stamp::min(), inGate(1));
  const PointFrame frame = monitor.update(Stamp::max(), inGate(1));
  EXPECT_TRUE(frame.isOccupied[gate]);
  EXPECT_EQ(frame.events.at(0).began, Stamp::min());
}

TEST(ZoneMonitorStamps, TheShortestTimeThatNoDurationHoldsIsALongOne) {
  ZoneMonitor monitor(debounced(100));
  monitor.update(Stamp::min(), inGate(1));
  EXPECT_TRUE(monitor.update(Stamp(0), inGate(1)).isOccupied[gate]);
}

// A recording that is looked at again is not read again.
TEST(ZoneMonitorCounts, AFrameThatWasCountedBeforeIsTakenByItsCounts) {
  ZoneDetector detector = debounced(100);
  detector.appendExclusionZone(rectangleZone("Tree", 4.0, 4.0, 6.0, 6.0));
  detector.setMinPoints(2);
  const classify::PointClassifier classifier(detector);
  ZoneMonitor byPoints(detector);
  ZoneMonitor byCounts(detector);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const std::vector<Points> frames = {Points(2, {1, 1, 1}),
                                      {{5, 5, 1}, {1, 1, 1}, {nan, 1, 1}},
                                      Points(3, {1, 1, 1}),
                                      Points(3, {1, 1, 1}),
                                      {}};
  std::size_t numEvents = 0;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const Stamp stamp = ms(100 * static_cast<int>(i));
    const PointFrame wanted = byPoints.update(stamp, frames[i]);
    const PointFrame found = byCounts.update(stamp, classifier.count(frames[i]));
    EXPECT_EQ(found.stamp, stamp);
    EXPECT_EQ(found.counts, wanted.counts);
    EXPECT_EQ(found.excluded, wanted.excluded);
    EXPECT_EQ(found.noReturns, wanted.noReturns);
    EXPECT_EQ(found.isOccupiedNow, wanted.isOccupiedNow);
    EXPECT_EQ(found.isOccupied, wanted.isOccupied);
    EXPECT_EQ(found.outputs, wanted.outputs);
    ASSERT_EQ(found.events.size(), wanted.events.size());
    numEvents += found.events.size();
  }
  EXPECT_EQ(numEvents, 1U);
  EXPECT_THROW(byCounts.update(ms(400), classify::ZoneCounts()), std::invalid_argument);
}

TEST(ZoneMonitorSnapshot, LaterEditsOfTheDetectorDoNotReachIt) {
  ZoneDetector detector = detectorWithGate();
  ZoneMonitor monitor(detector);
  detector.setMinPoints(100);
  detector.setTriggerZone(Level::LOW);
  detector.getZone(0, 0)->setZMax(-1.0);
  detector.getZone(0, 0)->setName("Other");
  detector.getEvaluationField(0)->name = "Other";
  detector.setEvaluationFieldIndex(5);
  detector.appendExclusionZone(rectangleZone("All", -50.0, -50.0, 50.0, 50.0));
  const PointFrame frame = monitor.update(ms(0), inGate(1));
  EXPECT_EQ(frame.counts[gate], 1U);
  EXPECT_EQ(frame.outputs[0], Level::HIGH);
  ASSERT_EQ(frame.events.size(), 1U);
  EXPECT_EQ(frame.events[0].slot.zoneName, "Gate");
  EXPECT_EQ(frame.events[0].slot.fieldName, "Yard");
}

TEST(ZoneMonitorSnapshot, ACopyGoesOnIndependently) {
  ZoneMonitor monitor(detectorWithGate());
  monitor.update(ms(0), inGate(1));
  ZoneMonitor copy = monitor;
  copy.update(ms(1), inGate(0));
  EXPECT_TRUE(monitor.update(ms(1), inGate(1)).events.empty());
}

TEST(ZoneMonitorMemory, AQuietFrameAllocatesNoMoreAfterAThousandFramesThanAtFirst) {
  ZoneMonitor monitor(debounced(10));
  const Points points = inGate(5);
  const auto allocationsOf = [&](int frame) {
    const orvantis::testing::AllocationCounter allocations;
    monitor.update(ms(frame), points);
    return allocations.count();
  };
  for (int frame = 0; frame < 20; ++frame) {
    monitor.update(ms(frame), points);
  }
  const std::size_t atFirst = allocationsOf(20);
  for (int frame = 21; frame < 1000; ++frame) {
    ASSERT_LE(allocationsOf(frame), atFirst) << frame;
  }
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
