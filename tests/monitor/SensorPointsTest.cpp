#include <limits>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <boost/uuid/uuid.hpp>
#include <gtest/gtest.h>

#include <filter/detection/Sector.h>
#include <filter/detection/Zone3dTarsel.h>
#include <filter/monitor/ZoneMonitor.h>

#include "Frames.h"

namespace orvantis::filter::monitor::testing {
namespace {

using detection::Zone3dTarsel;
using PointsOf = std::vector<std::array<double, 3>>;

SensorPoints seenBy(const std::string& sensor, const PointsOf& points) {
  return {sensor, classify::PointsView<double>::interleaved(points.data(), 24, points.size())};
}

SensorPoints seenBy(const std::string& sensor, const Points& points) {
  return {sensor, classify::PointsView<float>(points)};
}

std::shared_ptr<Zone3dTarsel> bound(const std::shared_ptr<Zone3dBase>& zone,
                                    const std::vector<std::string>& sensors) {
  auto result = std::make_shared<Zone3dTarsel>(zone->getZone2d(), zone->getZMin(), zone->getZMax(),
                                               boost::uuids::uuid{});
  result->setSpecificSensors(sensors);
  return result;
}

std::shared_ptr<Zone3dTarsel> gateOf(const std::vector<std::string>& sensors) {
  return bound(rectangleZone("Gate", 0.0, 0.0, 10.0, 10.0), sensors);
}

// The gate, bound to some sensors, and the same square for all of them.
ZoneDetector detectorOf(const std::shared_ptr<Zone3dBase>& gate) {
  ZoneDetector detector = detectorWithGate();
  detector.setZone(gate, 0, 0);
  detector.setZone(rectangleZone("Square", 0.0, 0.0, 10.0, 10.0), 7, 2);
  detector.setMinPoints(3);
  detector.setDebounceTime(ZoneDetector::Milliseconds(0));
  return detector;
}

constexpr std::size_t gate = zoneSlotIndex(0, 0);
constexpr std::size_t square = zoneSlotIndex(7, 2);

TEST(SensorPoints, ABoundZoneCountsThoseOfItsOwnSensors) {
  ZoneMonitor monitor(detectorOf(gateOf({"left", "right"})));
  const Points two = inGate(2);
  const Points one = inGate(1);
  const PointsOf far = {{1, 1, 1}, {2, 2, 1}, {1, 1, 9}, {std::numeric_limits<double>::infinity(), 0, 0}};
  const PointFrame frame =
      monitor.update(ms(0), {seenBy("left", two), seenBy("right", far), seenBy("mast", one)});
  EXPECT_EQ(frame.counts[gate], 4U);
  EXPECT_EQ(frame.counts[square], 5U);
  EXPECT_EQ(frame.noReturns, 1U);
  EXPECT_EQ(frame.excluded, 0U);
  EXPECT_TRUE(frame.isOccupied[gate]);
  ASSERT_EQ(frame.events.size(), 2U);
  EXPECT_EQ(frame.events[0].slot.zoneName, "Gate");
}

TEST(SensorPoints, OfNoneOfItsSensorsLeaveABoundZoneEmpty) {
  ZoneMonitor monitor(detectorOf(gateOf({"left"})));
  const Points many = inGate(9);
  const PointFrame frame = monitor.update(ms(0), {seenBy("Left", many), seenBy("", many)});
  EXPECT_EQ(frame.counts[gate], 0U);
  EXPECT_EQ(frame.counts[square], 18U);
  EXPECT_FALSE(frame.isOccupied[gate]);
  EXPECT_TRUE(frame.isOccupied[square]);
}

TEST(SensorPoints, AZoneThatNamesNoSensorCountsThoseOfAll) {
  ZoneMonitor monitor(detectorOf(gateOf({})));
  const Points two = inGate(2);
  EXPECT_EQ(monitor.update(ms(0), {seenBy("a", two), seenBy("b", two)}).counts[gate], 4U);
}

TEST(SensorPoints, AZoneThatIsNotEnabledCountsNone) {
  const auto zone = gateOf({"left"});
  zone->setEnabled(false);
  ZoneMonitor monitor(detectorOf(zone));
  const Points many = inGate(9);
  EXPECT_EQ(monitor.update(ms(0), {seenBy("left", many)}).counts[gate], 0U);
  const auto unbound = gateOf({});
  unbound->setEnabled(false);
  ZoneMonitor other(detectorOf(unbound));
  EXPECT_EQ(other.update(ms(0), {seenBy("left", many)}).counts[gate], 0U);
}

TEST(SensorPoints, ABoundExclusionZoneTakesThoseOfItsOwnSensors) {
  ZoneDetector detector = detectorOf(gateOf({}));
  detector.appendExclusionZone(rectangleZone("Oak", 0.0, 0.0, 2.0, 10.0));
  detector.appendExclusionZone(bound(rectangleZone("Elm", 4.0, 0.0, 6.0, 10.0), {"right"}));
  ZoneMonitor monitor(detector);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const PointsOf points = {{1, 1, 1}, {5, 5, 1}, {5, 6, 1}, {9, 9, 1}, {nan, 1, 1}};
  const std::vector<SensorPoints> sensors = {seenBy("left", points), seenBy("right", points)};
  const PointFrame frame = monitor.update(ms(0), sensors);
  EXPECT_EQ(frame.counts[gate], 4U);  // the left one's three, the right one's last
  EXPECT_EQ(frame.excluded, 4U);      // the left one's first, the right one's three
  EXPECT_EQ(frame.noReturns, 2U);
  const auto explanations = monitor.explain(sensors);
  ASSERT_EQ(explanations.size(), 2U);
  EXPECT_EQ(explanations[0].counted, 4U);
  EXPECT_EQ(explanations[0].taken, 4U);
  ASSERT_EQ(explanations[0].takenBy.size(), 2U);
  EXPECT_EQ(explanations[0].takenBy[0].zoneName, "Oak");
  EXPECT_EQ(explanations[0].takenBy[0].points, 2U);
  EXPECT_EQ(explanations[0].takenBy[1].zoneName, "Elm");
  EXPECT_EQ(explanations[0].takenBy[1].points, 2U);
}

TEST(SensorPoints, ExplanationsOfABoundZoneAreOfItsOwnSensors) {
  ZoneMonitor monitor(detectorOf(gateOf({"left"})));
  const Points two = inGate(2);
  const Points three = inGate(3);
  const std::vector<SensorPoints> sensors = {seenBy("left", two), seenBy("right", three)};
  monitor.update(ms(0), sensors);
  const auto explanations = monitor.explain(sensors);
  ASSERT_EQ(explanations.size(), 2U);
  EXPECT_EQ(explanations[0].counted, 2U);
  EXPECT_FALSE(explanations[0].isOccupiedNow);
  EXPECT_EQ(explanations[1].counted, 5U);
  EXPECT_TRUE(explanations[1].isOccupiedNow);
}

// Where nobody says whose the points are, nothing is left out.
TEST(SensorPoints, WithoutSensorsABoundZoneCountsEveryPoint) {
  ZoneMonitor monitor(detectorOf(gateOf({"left"})));
  EXPECT_EQ(monitor.update(ms(0), inGate(3)).counts[gate], 3U);
  EXPECT_EQ(monitor.explain(inGate(3))[0].counted, 3U);
}

TEST(SensorPoints, TheirFramesAreFramesLikeOthers) {
  ZoneMonitor monitor(detectorOf(gateOf({"left"})));
  const Points three = inGate(3);
  monitor.update(ms(10), {seenBy("left", three)});
  EXPECT_THROW(monitor.update(ms(10), {seenBy("left", three)}), std::invalid_argument);
  const PointFrame empty = monitor.update(ms(20), std::vector<SensorPoints>());
  EXPECT_FALSE(empty.isOccupied[gate]);
  EXPECT_EQ(empty.events.size(), 2U);
}

TEST(SensorPoints, AZoneKeepsItsStateWhenOnlyItsSensorsChange) {
  ZoneMonitor monitor(detectorOf(gateOf({"left"})));
  const Points three = inGate(3);
  monitor.update(ms(10), {seenBy("left", three)});
  EXPECT_TRUE(monitor.reconfigure(detectorOf(gateOf({"right"}))).empty());
  EXPECT_TRUE(monitor.update(ms(20), {seenBy("right", three)}).isOccupied[gate]);
  EXPECT_FALSE(monitor.update(ms(30), {seenBy("left", three)}).isOccupied[gate]);
}

// Asks every zone for every point of every sensor that it is bound to.
TEST(SensorPoints, CountsAreThoseOfEveryZoneAskedForEveryPoint) {
  std::mt19937 random(77);
  std::uniform_real_distribution<double> metres(-10, 10);
  std::uniform_int_distribution<int> dice(0, 5);
  const std::vector<std::string> names = {"a", "b", "c"};
  const auto anyZone = [&](const std::string& name) -> std::shared_ptr<Zone3dBase> {
    auto plain = dice(random) == 0
                     ? std::make_shared<Zone3dBase>(std::make_shared<detection::Sector>(name, -3.0, 3.0, 8.0),
                                                    0.0, 2.0)
                     : rectangleZone(name, metres(random), metres(random), metres(random), metres(random));
    if (dice(random) < 2) {
      return plain;
    }
    std::vector<std::string> sensors;
    for (const std::string& sensor : names) {
      if (dice(random) < 3) {
        sensors.push_back(sensor);
      }
    }
    const auto zone = bound(plain, sensors);
    zone->setEnabled(dice(random) != 0);
    return zone;
  };
  const auto counts = [](const std::shared_ptr<Zone3dBase>& zone, const std::string& sensor,
                         const std::array<double, 3>& p) {
    if (const auto target = std::dynamic_pointer_cast<Zone3dTarsel>(zone)) {
      const auto sensors = target->getSpecificSensors();
      if (!target->enabled() || (!sensors.empty() && sensors.count(sensor) == 0)) {
        return false;
      }
    }
    return zone->within(p[0], p[1], p[2]);
  };
  for (int round = 0; round < 60; ++round) {
    ZoneDetector detector;
    std::vector<std::shared_ptr<Zone3dBase>> zones(NUM_ZONE_SLOTS);
    for (int slot = 0; slot < 24; ++slot) {
      zones[static_cast<std::size_t>(slot)] = anyZone("Z" + std::to_string(slot));
      detector.setZone(zones[static_cast<std::size_t>(slot)], slot / 3, slot % 3);
    }
    for (int k = 0; k < round % 4; ++k) {
      detector.appendExclusionZone(anyZone("E" + std::to_string(k)));
    }
    std::vector<PointsOf> clouds(3);
    PointFrame expected;
    for (std::size_t s = 0; s < 3; ++s) {
      for (int i = 0; i < 100; ++i) {
        const std::array<double, 3> p = {metres(random), metres(random), metres(random) / 5};
        clouds[s].push_back(p);
        bool isTaken = false;
        for (const auto& zone : detector.getExclusionZoneVector()) {
          isTaken = isTaken || counts(zone, names[s], p);
        }
        expected.excluded += isTaken ? 1U : 0U;
        for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
          expected.counts[slot] += !isTaken && counts(zones[slot], names[s], p) ? 1U : 0U;
        }
      }
    }
    const std::vector<SensorPoints> sensors = {seenBy("a", clouds[0]), seenBy("b", clouds[1]),
                                               seenBy("c", clouds[2])};
    ZoneMonitor monitor(detector);
    const PointFrame frame = monitor.update(ms(0), sensors);
    ASSERT_EQ(frame.counts, expected.counts) << round;
    ASSERT_EQ(frame.excluded, expected.excluded) << round;
    for (const ZoneExplanation& explanation : monitor.explain(sensors)) {
      ASSERT_EQ(explanation.counted,
                expected.counts[zoneSlotIndex(explanation.slot.field, explanation.slot.zone)]);
    }
  }
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
