#include <gtest/gtest.h>

#include <filter/monitor/ZoneMonitor.h>

#include "Frames.h"

namespace orvantis::filter::monitor::testing {
namespace {

ZoneDetector detectorWithTwoTrees() {
  ZoneDetector detector = detectorWithGate();
  detector.setZone(rectangleZone("Far", 100.0, 0.0, 110.0, 10.0), 2, 1);
  detector.appendExclusionZone(rectangleZone("Nowhere", 200.0, 0.0, 210.0, 10.0));
  detector.appendExclusionZone(rectangleZone("Oak", 2.0, 2.0, 6.0, 6.0));
  detector.appendExclusionZone(rectangleZone("Elm", 4.0, 4.0, 8.0, 8.0));
  detector.setMinPoints(3);
  detector.setDebounceTime(ZoneDetector::Milliseconds(300));
  return detector;
}

TEST(ZoneExplanations, TellWhatCountsAndWhatWhichExclusionZoneTakes) {
  ZoneMonitor monitor(detectorWithTwoTrees());
  // Two that count, one in the oak, three in both trees, two in the elm, and an oak's one outside every zone.
  const Points points{{1, 1, 1}, {9, 9, 1}, {3, 3, 1}, {5, 5, 1}, {5, 5, 1},
                      {5, 5, 1}, {7, 7, 1}, {7, 7, 1}, {3, 3, 9}};
  monitor.update(ms(0), points);
  const auto explanations = monitor.explain(points);
  ASSERT_EQ(explanations.size(), 2U);
  const ZoneExplanation& gate = explanations[0];
  EXPECT_EQ(gate.slot.zoneName, "Gate");
  EXPECT_EQ(gate.counted, 2U);
  EXPECT_EQ(gate.minPoints, 3);
  EXPECT_EQ(gate.taken, 6U);
  ASSERT_EQ(gate.takenBy.size(), 2U);
  EXPECT_EQ(gate.takenBy[0].exclusionZone, 1U);
  EXPECT_EQ(gate.takenBy[0].zoneName, "Oak");
  EXPECT_EQ(gate.takenBy[0].points, 4U);
  EXPECT_EQ(gate.takenBy[1].exclusionZone, 2U);
  EXPECT_EQ(gate.takenBy[1].zoneName, "Elm");
  EXPECT_EQ(gate.takenBy[1].points, 5U);
  const ZoneExplanation& far = explanations[1];
  EXPECT_EQ(far.slot.field, 2);
  EXPECT_EQ(far.slot.zone, 1);
  EXPECT_EQ(far.counted, 0U);
  EXPECT_TRUE(far.takenBy.empty());
}

TEST(ZoneExplanations, TellTheTimeStillMissingToTripAndToClear) {
  ZoneMonitor monitor(detectorWithTwoTrees());
  const Points three{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}};
  const Points two{{1, 1, 1}, {1, 1, 1}};
  const auto gateAfter = [&](Stamp stamp, const Points& points) {
    monitor.update(stamp, points);
    return monitor.explain(points).front();
  };
  ZoneExplanation gate = gateAfter(ms(0), two);
  EXPECT_FALSE(gate.isOccupiedNow);
  EXPECT_FALSE(gate.isOccupied);
  EXPECT_EQ(gate.missing, std::nullopt);
  EXPECT_EQ(gate.differsSince, std::nullopt);
  gate = gateAfter(ms(100), three);
  EXPECT_TRUE(gate.isOccupiedNow);
  EXPECT_FALSE(gate.isOccupied);
  EXPECT_EQ(gate.missing, ms(300));
  EXPECT_EQ(gate.differsSince, ms(100));
  gate = gateAfter(ms(399), three);
  EXPECT_EQ(gate.missing, ms(1));
  gate = gateAfter(ms(400), three);
  EXPECT_TRUE(gate.isOccupiedNow);
  EXPECT_TRUE(gate.isOccupied);
  EXPECT_EQ(gate.missing, std::nullopt);
  gate = gateAfter(ms(500), two);
  gate = gateAfter(ms(620), two);
  EXPECT_FALSE(gate.isOccupiedNow);
  EXPECT_TRUE(gate.isOccupied);
  EXPECT_EQ(gate.missing, ms(180));
  EXPECT_EQ(gate.differsSince, ms(500));
}

TEST(ZoneExplanations, AnEmptySlotHasNone) {
  EXPECT_TRUE(ZoneMonitor(ZoneDetector()).explain(Points{{1, 1, 1}}).empty());
}

TEST(ZoneExplanations, BeforeTheFirstFrameEveryZoneIsCleared) {
  const auto explanations = ZoneMonitor(detectorWithGate()).explain(inGate(4));
  ASSERT_EQ(explanations.size(), 1U);
  EXPECT_EQ(explanations[0].counted, 4U);
  EXPECT_FALSE(explanations[0].isOccupied);
  EXPECT_EQ(explanations[0].missing, std::nullopt);
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
