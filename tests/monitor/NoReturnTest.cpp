#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include <filter/detection/Sector.h>
#include <filter/monitor/ZoneMonitor.h>

#include "Frames.h"

namespace orvantis::filter::monitor::testing {
namespace {

std::shared_ptr<detection::Zone3dBase> disc(const char* name) {
  constexpr double wholeTurn = 6.283185307179586;
  return std::make_shared<detection::Zone3dBase>(
      std::make_shared<detection::Sector>(name, 0.0, wholeTurn, 5.0), 0.0, 2.0);
}

// A whole disc holds a point that is not a number, as the radius cannot refuse it; a frame never has it.
TEST(NoReturns, AreInsideNothingEvenWhereTheShapeHoldsThem) {
  const float nan = std::nanf("");
  const float infinity = std::numeric_limits<float>::infinity();
  ZoneDetector detector;
  detector.setZone(disc("Disc"), 0, 0);
  ASSERT_TRUE(detector.getZone(0, 0)->within(static_cast<double>(nan), 0.0, 1.0));

  ZoneMonitor monitor(detector);
  const Points points{{nan, 0, 1}, {0, nan, 1}, {0, 0, nan}, {0, 0, infinity}};
  const PointFrame frame = monitor.update(ms(0), points);
  EXPECT_EQ(frame.noReturns, 4U);
  EXPECT_EQ(frame.counts[0], 0U);
  EXPECT_EQ(frame.excluded, 0U);
  EXPECT_FALSE(frame.isOccupied[0]);
  EXPECT_EQ(monitor.explain(points).front().counted, 0U);
}

TEST(NoReturns, AreTakenByNoExclusionZone) {
  const float nan = std::nanf("");
  ZoneDetector detector;
  detector.setZone(disc("Disc"), 0, 0);
  detector.appendExclusionZone(disc("Pillar"));
  ZoneMonitor monitor(detector);
  const Points points{{nan, 0, 1}, {1, 1, 1}};
  const PointFrame frame = monitor.update(ms(0), points);
  EXPECT_EQ(frame.noReturns, 1U);
  EXPECT_EQ(frame.excluded, 1U);
  EXPECT_EQ(monitor.explain(points).front().taken, 1U);
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
