#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Sector.h>
#include <filter/monitor/ObjectMonitor.h>

#include "Frames.h"

namespace orvantis::filter::monitor::testing {
namespace {

using Kind = ObjectEvent::Kind;
using detection::Point;
using detection::Sector;

constexpr std::size_t gate = zoneSlotIndex(0, 0);
constexpr std::uint32_t inGateBit = std::uint32_t{1} << gate;

// The gate is the square (0, 0) to (10, 10) between the heights 0 and 2; a box is 2 by 1.
std::uint32_t zonesOf(const ZoneDetector& detector, const TrackedObject& object) {
  ObjectMonitor monitor(detector);
  return monitor.update(ms(0), {object}).zones.at(0);
}

bool isInGate(const TrackedObject& object) {
  return zonesOf(detectorWithGate(), object) == inGateBit;
}

ZoneDetector detectorWith(const std::shared_ptr<detection::Zone>& shape) {
  ZoneDetector detector;
  detector.setZone(std::make_shared<Zone3dBase>(shape, 0.0, 2.0), 0, 0);
  return detector;
}

TEST(ObjectsInZones, AreThoseThatShareAnyPointWithThem) {
  EXPECT_TRUE(isInGate(box(1, 5, 5)));
  EXPECT_TRUE(isInGate(box(1, 0, 5)));
  for (const auto& [x, y] : std::vector<std::pair<double, double>>{
           {-1, 5}, {11, 5}, {5, -0.5}, {5, 10.5}, {-1, -0.5}, {11, 10.5}}) {
    EXPECT_TRUE(isInGate(box(1, x, y))) << "touches an edge or a corner from (" << x << ", " << y << ")";
    const double beyondX = std::nextafter(x, x < 5 ? -100 : 100);
    const double beyondY = std::nextafter(y, y < 5 ? -100 : 100);
    EXPECT_FALSE(isInGate(box(1, x == 5 ? x : beyondX, y == 5 ? y : beyondY))) << x << ", " << y;
  }
  EXPECT_FALSE(isInGate(box(1, -5, 5)));
  EXPECT_TRUE(isInGate({1, core::State(5, 5, 100, 100, 0.3), 0, 1, ""}));  // covers the zone
  EXPECT_TRUE(isInGate({1, core::State(5, 5, 100, 0.1, 0), 0, 1, ""}));    // lies across it
}

TEST(ObjectsInZones, PointsAreObjectsToo) {
  EXPECT_TRUE(isInGate({1, core::State(5, 5, 0, 0, 0), 0, 1, ""}));
  EXPECT_FALSE(isInGate({1, core::State(11, 5, 0, 0, 0), 0, 1, ""}));
}

TEST(ObjectsInZones, NeedHeightsThatTouch) {
  const auto between = [](double zMin, double zMax) {
    return isInGate({1, core::State(5, 5, 2, 1, 0), zMin, zMax, ""});
  };
  EXPECT_TRUE(between(0.5, 1.0));
  EXPECT_TRUE(between(-5.0, 50.0));
  EXPECT_TRUE(between(2.0, 3.0));
  EXPECT_TRUE(between(-1.0, 0.0));
  EXPECT_FALSE(between(std::nextafter(2.0, 3.0), 3.0));
  EXPECT_FALSE(between(-1.0, -0x1p-1000));
  EXPECT_FALSE(between(std::nan(""), 1.0));
  EXPECT_FALSE(between(0.0, std::nan("")));
}

TEST(ObjectsInZones, NeedAZoneThatHoldsSomeHeight) {
  const auto isInGateBetween = [](double zMin, double zMax) {
    ZoneDetector detector = detectorWithGate();
    detector.getZone(0, 0)->setZMin(zMin);
    detector.getZone(0, 0)->setZMax(zMax);
    return zonesOf(detector, {1, core::State(5, 5, 2, 1, 0), 0.5, 1.5, ""}) == inGateBit;
  };
  EXPECT_TRUE(isInGateBetween(1.0, 1.0));  // a plane is met
  EXPECT_FALSE(isInGateBetween(std::nextafter(1.0, 2.0), 1.0));
  EXPECT_FALSE(isInGateBetween(1.5, 0.5));  // its ends both touch the object
  EXPECT_FALSE(isInGateBetween(std::nan(""), 2.0));
  EXPECT_FALSE(isInGateBetween(0.0, std::nan("")));
}

TEST(ObjectsInZones, NeedAHeightOfTheirOwn) {
  EXPECT_TRUE(isInGate({1, core::State(5, 5, 2, 1, 0), 1.0, 1.0, ""}));
  EXPECT_FALSE(isInGate({1, core::State(5, 5, 2, 1, 0), std::nextafter(1.0, 2.0), 1.0, ""}));
}

TEST(ObjectsInZones, WhollyInsideASectorCounts) {
  const auto sector = std::make_shared<Sector>("S", -1.0, 1.0, 20.0);
  const TrackedObject inside = box(1, 10, 0);
  ASSERT_FALSE(sector->intersects(inside.footprint.getBoostPolygon()));
  EXPECT_EQ(zonesOf(detectorWith(sector), inside), inGateBit);
}

TEST(ObjectsInZones, AcrossTheBorderOfASectorCounts) {
  const auto sector = std::make_shared<Sector>("S", -1.0, 1.0, 20.0);
  EXPECT_EQ(zonesOf(detectorWith(sector), box(1, 20, 0)), inGateBit);
  EXPECT_EQ(zonesOf(detectorWith(sector), box(1, 22, 0)), 0U);
}

TEST(ObjectsInZones, ASectorDecidesItsBorderItselfEvenWhereItsBoundsAreRounded) {
  int found = 0;
  for (int i = 1; i < 1'000; ++i) {
    const double origin = 0.1 * i;
    const double radius = 0.37 * i;
    const auto disc = std::make_shared<Sector>("S", -4.0, -4.0, radius, Point(origin, 0.0));
    const double beyond = std::nextafter(origin - radius, -1e9);
    if (disc->within(Point(beyond, 0.0))) {
      EXPECT_EQ(zonesOf(detectorWith(disc), {1, core::State(beyond, 0.0, 0.0, 0.0, 0.0), 0, 1, ""}),
                inGateBit)
          << i;
      ++found;
    }
  }
  EXPECT_GT(found, 10);
}

TEST(ObjectsInZones, ASectorKeepsItsOrigin) {
  const auto sector = std::make_shared<Sector>("S", -1.0, 1.0, 20.0, Point(100.0, 0.0));
  EXPECT_EQ(zonesOf(detectorWith(sector), box(1, 110, 0)), inGateBit);
  EXPECT_EQ(zonesOf(detectorWith(sector), box(1, 10, 0)), 0U);
}

TEST(ObjectsInZones, ExclusionZonesTakeNone) {
  ZoneDetector detector = detectorWithGate();
  detector.appendExclusionZone(rectangleZone("All", -50.0, -50.0, 50.0, 50.0));
  EXPECT_EQ(zonesOf(detector, box(1, 5, 5)), inGateBit);
}

TEST(ObjectsInZones, SlotsWithoutAZoneHoldNone) {
  ZoneDetector detector = detectorWithGate();
  detector.setZone(std::make_shared<Zone3dBase>(), 0, 1);
  EXPECT_EQ(zonesOf(detector, box(1, 5, 5)), inGateBit);
}

TEST(ObjectsInZones, WithoutAPlaceAreInNone) {
  const auto sector = std::make_shared<Sector>("S", -4.0, 4.0, 20.0);
  EXPECT_EQ(zonesOf(detectorWith(sector), {1, core::State(PlanarPolygon()), 0, 1, ""}), 0U);
  EXPECT_EQ(zonesOf(detectorWith(sector), box(1, std::nan(""), 0)), 0U);
  EXPECT_EQ(zonesOf(detectorWithGate(), box(1, std::nan(""), 0)), 0U);
}

TEST(ObjectsInZones, AreReportedInTheOrderGivenWithTheirNumber) {
  ZoneDetector detector = detectorWithGate();
  detector.setZone(rectangleZone("Half", 5.0, 0.0, 20.0, 10.0), 7, 2);
  const std::uint32_t inHalf = std::uint32_t{1} << zoneSlotIndex(7, 2);
  ObjectMonitor monitor(detector);
  const ObjectFrame frame =
      monitor.update(ms(3), {box(9, 2, 5), box(-1, 7, 5), box(4, 30, 5), box(-1, 7, 5), box(3, 15, 5)});
  EXPECT_EQ(frame.stamp, ms(3));
  EXPECT_EQ(frame.zones,
            (std::vector<std::uint32_t>{inGateBit, inGateBit | inHalf, 0, inGateBit | inHalf, inHalf}));
  EXPECT_EQ(frame.inside[gate], 3U);
  EXPECT_EQ(frame.inside[zoneSlotIndex(7, 2)], 3U);
  EXPECT_EQ(frame.inside[1], 0U);
}

TEST(ObjectEvents, EnteredAndLeftWithTheTimeBetween) {
  ObjectMonitor monitor(detectorWithGate());
  EXPECT_TRUE(monitor.update(ms(0), {box(7, -5, 5, "car")}).events.empty());
  ObjectFrame frame = monitor.update(ms(100), {box(7, 1, 5, "car")});
  ASSERT_EQ(frame.events.size(), 1U);
  EXPECT_EQ(frame.events[0].kind, Kind::Entered);
  EXPECT_EQ(frame.events[0].id, 7);
  EXPECT_EQ(frame.events[0].className, "car");
  EXPECT_EQ(frame.events[0].stamp, ms(100));
  EXPECT_EQ(frame.events[0].dwell, ms(0));
  EXPECT_EQ(frame.events[0].slot.field, 0);
  EXPECT_EQ(frame.events[0].slot.zone, 0);
  EXPECT_EQ(frame.events[0].slot.fieldName, "Yard");
  EXPECT_EQ(frame.events[0].slot.zoneName, "Gate");
  EXPECT_TRUE(monitor.update(ms(1300), {box(7, 5, 5, "car")}).events.empty());
  frame = monitor.update(ms(2600), {box(7, 15, 5, "van")});
  ASSERT_EQ(frame.events.size(), 1U);
  EXPECT_EQ(frame.events[0].kind, Kind::Left);
  EXPECT_EQ(frame.events[0].className, "van");
  EXPECT_EQ(frame.events[0].stamp, ms(2600));
  EXPECT_EQ(frame.events[0].dwell, ms(2500));
  EXPECT_EQ(frame.inside[gate], 0U);
}

TEST(ObjectEvents, ATrackFirstSeenInsideEnters) {
  ObjectMonitor monitor(detectorWithGate());
  const ObjectFrame frame = monitor.update(ms(50), {box(7, 5, 5)});
  ASSERT_EQ(frame.events.size(), 1U);
  EXPECT_EQ(frame.events[0].kind, Kind::Entered);
  EXPECT_EQ(frame.events[0].stamp, ms(50));
}

TEST(ObjectEvents, OneThatIsBackEntersAgainWithAFreshDwell) {
  ObjectMonitor monitor(detectorWithGate());
  monitor.update(ms(0), {box(7, 5, 5)});
  monitor.update(ms(100), {box(7, 50, 5)});
  EXPECT_EQ(monitor.update(ms(200), {box(7, 5, 5)}).events.at(0).kind, Kind::Entered);
  EXPECT_EQ(monitor.update(ms(250), {box(7, 50, 5)}).events.at(0).dwell, ms(50));
}

TEST(ObjectEvents, GoingOverFromOneZoneToTheNextLeavesFirst) {
  ZoneDetector detector = detectorWithGate();
  detector.setZone(rectangleZone("Next", 20.0, 0.0, 30.0, 10.0), 0, 1);
  ObjectMonitor monitor(detector);
  monitor.update(ms(0), {box(7, 25, 5)});
  const auto events = monitor.update(ms(100), {box(7, 5, 5)}).events;
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].kind, Kind::Left);
  EXPECT_EQ(events[0].slot.zoneName, "Next");
  EXPECT_EQ(events[1].kind, Kind::Entered);
  EXPECT_EQ(events[1].slot.zoneName, "Gate");
}

TEST(ObjectEvents, ObjectsWithoutIdentityAreCountedAndNothingElse) {
  ObjectMonitor monitor(detectorWithGate());
  for (int i = 0; i < 4; ++i) {
    const bool isInside = i % 2 == 0;
    const ObjectFrame frame =
        monitor.update(ms(i), {box(-1, isInside ? 5 : 50, 5), box(-1, isInside ? 6 : 50, 5), box(-9, 5, 5)});
    EXPECT_EQ(frame.inside[gate], isInside ? 3U : 1U);
    EXPECT_TRUE(frame.events.empty());
  }
  EXPECT_EQ(monitor.numTracks(), 0U);
  EXPECT_TRUE(monitor.occupants(0, 0).empty());
}

TEST(ObjectTracks, OutOfSightStayInsideUntilTheyAreForgotten) {
  ObjectMonitor monitor(detectorWithGate(), ms(500));
  monitor.update(ms(0), {box(7, 5, 5, "car")});
  monitor.update(ms(200), {box(7, 5, 5, "car")});
  ObjectFrame frame = monitor.update(ms(700) - Duration(1), {});
  EXPECT_TRUE(frame.events.empty());
  EXPECT_EQ(frame.inside[gate], 1U);
  frame = monitor.update(ms(700), {});
  ASSERT_EQ(frame.events.size(), 1U);
  EXPECT_EQ(frame.events[0].kind, Kind::Lost);
  EXPECT_EQ(frame.events[0].className, "car");
  EXPECT_EQ(frame.events[0].stamp, ms(200));
  EXPECT_EQ(frame.events[0].dwell, ms(200));
  EXPECT_EQ(frame.inside[gate], 0U);
  EXPECT_EQ(monitor.numTracks(), 0U);
  EXPECT_TRUE(monitor.update(ms(5000), {}).events.empty());
}

TEST(ObjectTracks, AreLostWhenTimePassesWithoutFrames) {
  ObjectMonitor monitor(detectorWithGate(), ms(500));
  monitor.update(ms(0), {box(7, 5, 5, "car"), box(9, 5, 5), box(4, 5, 5)});
  monitor.update(ms(200), {box(9, 5, 5)});
  EXPECT_TRUE(monitor.advance(ms(499)).empty());
  const auto events = monitor.advance(ms(500));
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].id, 4);
  EXPECT_EQ(events[1].kind, Kind::Lost);
  EXPECT_EQ(events[1].id, 7);
  EXPECT_EQ(events[1].className, "car");
  EXPECT_EQ(events[1].stamp, ms(0));
  EXPECT_EQ(events[1].slot.zoneName, "Gate");
  EXPECT_EQ(monitor.numTracks(), 1U);
  EXPECT_EQ(monitor.occupants(0, 0).size(), 1U);
  EXPECT_TRUE(monitor.advance(ms(500)).empty());  // once
  // A frame of the same stamp goes on from there.
  const ObjectFrame frame = monitor.update(ms(500), {box(7, 5, 5)});
  ASSERT_EQ(frame.events.size(), 1U);
  EXPECT_EQ(frame.events[0].kind, Kind::Entered);
  EXPECT_EQ(frame.inside[gate], 2U);
}

TEST(ObjectTracks, ThatAreSeenInTheFrameOfTheirLastInstantAreLostFirstWhetherTimePassedOrNot) {
  for (const bool passes : {false, true}) {
    ObjectMonitor monitor(detectorWithGate(), ms(500));
    monitor.update(ms(0), {box(7, 5, 5)});
    std::vector<ObjectEvent> events = passes ? monitor.advance(ms(500)) : std::vector<ObjectEvent>();
    const auto more = monitor.update(ms(500), {box(7, 5, 5)}).events;
    events.insert(events.end(), more.begin(), more.end());
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].kind, Kind::Lost);
    EXPECT_EQ(events[0].stamp, ms(0));
    EXPECT_EQ(events[1].kind, Kind::Entered);
    EXPECT_EQ(events[1].stamp, ms(500));
    EXPECT_TRUE(monitor.advance(ms(500)).empty());  // after the frame of that stamp there is nothing left
  }
}

TEST(ObjectTracks, TimePassesForwardsOnly) {
  ObjectMonitor monitor(detectorWithGate());
  monitor.advance(ms(5));
  for (const auto& act : std::vector<std::function<void()>>{[&] { monitor.advance(ms(4)); },
                                                            [&] { monitor.update(ms(4), {}); }}) {
    try {
      act();
      ADD_FAILURE() << "not refused";
    } catch (const std::invalid_argument& error) {
      EXPECT_STREQ(error.what(), "The stamp 4000000 ns is earlier than the last one, 5000000 ns");
    }
  }
  EXPECT_EQ(monitor.update(ms(5), {box(7, 5, 5)}).events.size(), 1U);
}

TEST(ObjectTracks, OutOfSightAreLostAtTheChangeOfTheirZoneWithTheLastFramesStamp) {
  ObjectMonitor monitor(detectorWithGate());
  monitor.update(ms(0), {box(7, 5, 5)});
  monitor.advance(ms(900));
  const auto events = monitor.reconfigure(ZoneDetector());
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].stamp, ms(0));
  EXPECT_EQ(monitor.update(ms(900), {}).inside[gate], 0U);
}

TEST(ObjectTracks, ThatReturnInTimeNeverLeft) {
  ObjectMonitor monitor(detectorWithGate(), ms(500));
  monitor.update(ms(0), {box(7, 5, 5)});
  monitor.update(ms(300), {});
  EXPECT_TRUE(monitor.update(ms(499), {box(7, 6, 5)}).events.empty());
  EXPECT_EQ(monitor.update(ms(600), {box(7, 60, 5)}).events.at(0).dwell, ms(600));
}

TEST(ObjectTracks, ThatReturnTooLateAreLostAndEnterAnew) {
  ObjectMonitor monitor(detectorWithGate(), ms(500));
  monitor.update(ms(0), {box(7, 5, 5)});
  const auto events = monitor.update(ms(500), {box(7, 6, 5)}).events;
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].kind, Kind::Lost);
  EXPECT_EQ(events[0].stamp, ms(0));
  EXPECT_EQ(events[1].kind, Kind::Entered);
  EXPECT_EQ(events[1].stamp, ms(500));
}

TEST(ObjectTracks, OutsideEveryZoneAreForgottenSilently) {
  ObjectMonitor monitor(detectorWithGate(), ms(500));
  monitor.update(ms(0), {box(7, 50, 5)});
  EXPECT_EQ(monitor.numTracks(), 1U);
  EXPECT_TRUE(monitor.update(ms(500), {}).events.empty());
  EXPECT_EQ(monitor.numTracks(), 0U);
}

TEST(ObjectTracks, ThatSwapIdsSwapZones) {
  ObjectMonitor monitor(detectorWithGate());
  monitor.update(ms(0), {box(1, 5, 5), box(2, 50, 5)});
  const ObjectFrame frame = monitor.update(ms(100), {box(2, 5, 5), box(1, 50, 5)});
  ASSERT_EQ(frame.events.size(), 2U);
  EXPECT_EQ(frame.events[0].kind, Kind::Entered);
  EXPECT_EQ(frame.events[0].id, 2);
  EXPECT_EQ(frame.events[1].kind, Kind::Left);
  EXPECT_EQ(frame.events[1].id, 1);
  EXPECT_EQ(frame.inside[gate], 1U);
}

TEST(ObjectTracks, ThatCannotBePlacedCountAsNotSeen) {
  ObjectMonitor monitor(detectorWithGate(), ms(500));
  monitor.update(ms(0), {box(7, 5, 5)});
  const ObjectFrame frame = monitor.update(ms(400), {box(7, std::nan(""), 5)});
  EXPECT_TRUE(frame.events.empty());
  EXPECT_EQ(frame.zones, (std::vector<std::uint32_t>{0}));
  EXPECT_EQ(frame.inside[gate], 1U);
  EXPECT_EQ(monitor.update(ms(500), {box(7, std::nan(""), 5)}).events.at(0).kind, Kind::Lost);
}

TEST(ObjectTracks, OfAnHourLeaveNothingBehind) {
  ObjectMonitor monitor(detectorWithGate());
  std::size_t entered = 0;
  std::size_t lost = 0;
  for (int i = 0; i < 36'000; ++i) {
    for (const ObjectEvent& event : monitor.update(ms(100 * i), {box(i, 5, 5)}).events) {
      ++(event.kind == Kind::Entered ? entered : lost);
    }
    ASSERT_LE(monitor.numTracks(), 20U);
  }
  EXPECT_EQ(entered, 36'000U);
  EXPECT_EQ(lost + monitor.numTracks(), 36'000U);
}

TEST(ObjectTracks, OfAZoneAreListedByTheirIds) {
  ObjectMonitor monitor(detectorWithGate());
  monitor.update(ms(0), {box(9, 5, 5, "car"), box(4, 50, 5), box(-1, 5, 5)});
  monitor.update(ms(100), {box(4, 5, 5, "van")});
  const auto occupants = monitor.occupants(0, 0);
  ASSERT_EQ(occupants.size(), 2U);
  EXPECT_EQ(occupants[0].id, 4);
  EXPECT_EQ(occupants[0].className, "van");
  EXPECT_EQ(occupants[0].entered, ms(100));
  EXPECT_EQ(occupants[1].id, 9);
  EXPECT_EQ(occupants[1].entered, ms(0));
  EXPECT_EQ(occupants[1].lastSeen, ms(0));
  for (const auto& [field, zone] : std::vector<std::pair<int, int>>{{-1, 0}, {8, 0}, {0, -1}, {0, 3}}) {
    try {
      monitor.occupants(field, zone);
      ADD_FAILURE() << field << ' ' << zone;
    } catch (const std::out_of_range& error) {
      EXPECT_EQ(error.what(),
                "There is no zone " + std::to_string(zone) + " of field " + std::to_string(field));
    }
  }
}

TEST(ObjectReconfigure, TheSameZoneKeepsItsTracks) {
  ObjectMonitor monitor(detectorWithGate());
  monitor.update(ms(0), {box(7, 5, 5)});
  ZoneDetector renamed = detectorWithGate();
  renamed.getZone(0, 0)->setName("Door");
  EXPECT_TRUE(monitor.reconfigure(renamed).empty());
  EXPECT_TRUE(monitor.update(ms(100), {box(7, 6, 5)}).events.empty());
  const auto events = monitor.update(ms(200), {box(7, 60, 5)}).events;
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].dwell, ms(200));
  EXPECT_EQ(events[0].slot.zoneName, "Door");
}

TEST(ObjectReconfigure, TracksOfAnotherZoneAreLostAndEnterAnew) {
  ObjectMonitor monitor(detectorWithGate());
  EXPECT_TRUE(monitor.reconfigure(detectorWithGate()).empty());
  monitor.update(ms(0), {box(7, 5, 5), box(3, 5, 5), box(5, 50, 5)});
  monitor.update(ms(100), {box(7, 5, 5)});
  ZoneDetector changed = detectorWithGate();
  changed.getZone(0, 0)->setZMax(3.0);
  const auto events = monitor.reconfigure(changed);
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].id, 3);
  EXPECT_EQ(events[1].id, 7);
  EXPECT_EQ(events[1].kind, Kind::Lost);
  EXPECT_EQ(events[1].stamp, ms(100));
  EXPECT_EQ(events[1].dwell, ms(100));
  EXPECT_TRUE(monitor.occupants(0, 0).empty());
  EXPECT_EQ(monitor.update(ms(200), {box(7, 5, 5)}).events.at(0).kind, Kind::Entered);
}

TEST(ObjectReconfigure, AZoneThatHoldsNoHeightAnyMoreLosesItsTracks) {
  ObjectMonitor monitor(detectorWithGate());
  monitor.update(ms(0), {box(7, 5, 5)});
  ZoneDetector upsideDown = detectorWithGate();
  upsideDown.getZone(0, 0)->setZMin(2.0);
  upsideDown.getZone(0, 0)->setZMax(0.0);
  const auto events = monitor.reconfigure(upsideDown);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].kind, Kind::Lost);
  EXPECT_TRUE(monitor.update(ms(100), {box(7, 5, 5)}).events.empty());
  // The same zone again keeps what it has: nothing. The right way up it is another one.
  EXPECT_TRUE(monitor.reconfigure(upsideDown).empty());
  EXPECT_TRUE(monitor.update(ms(200), {box(7, 5, 5)}).events.empty());
  EXPECT_TRUE(monitor.reconfigure(detectorWithGate()).empty());
  EXPECT_EQ(monitor.update(ms(300), {box(7, 5, 5)}).events.at(0).kind, Kind::Entered);
}

TEST(ObjectMonitorSnapshot, LaterEditsOfTheDetectorDoNotReachIt) {
  ZoneDetector detector = detectorWithGate();
  ObjectMonitor monitor(detector);
  detector.getZone(0, 0)->setZMax(-1.0);
  detector.getZone(0, 0)->setName("Other");
  const auto events = monitor.update(ms(0), {box(7, 5, 5)}).events;
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].slot.zoneName, "Gate");
}

TEST(ObjectMonitorInput, IsRefusedWithoutATrace) {
  ObjectMonitor monitor(detectorWithGate());
  monitor.update(ms(5), {box(7, 5, 5)});
  try {
    monitor.update(ms(5), {});
    ADD_FAILURE() << "the stamp was not refused";
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), "The stamp 5000000 ns is not later than the last one, 5000000 ns");
  }
  try {
    monitor.update(ms(6), {box(3, 5, 5), box(3, 50, 5)});
    ADD_FAILURE() << "the ids were not refused";
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), "Two objects of one frame have the id 3");
  }
  EXPECT_EQ(monitor.numTracks(), 1U);
  EXPECT_TRUE(monitor.update(ms(6), {box(7, 5, 5)}).events.empty());
  EXPECT_THROW(ObjectMonitor(detectorWithGate(), ms(0)), std::invalid_argument);
}

TEST(ObjectZoneChange, OfTheLastSlotConcernsThatSlot) {
  ZoneDetector detector = detectorWithGate();
  detector.setZone(rectangleZone("Far", 20, 0, 30, 10), 7, 2);
  ObjectMonitor monitor(detector);
  monitor.update(ms(0), {box(1, 5, 5), box(2, 25, 5)});
  ASSERT_EQ(monitor.occupants(7, 2).size(), 1U);
  EXPECT_EQ(monitor.occupants(7, 2)[0].id, 2);
  const auto events = monitor.reconfigure(detectorWithGate());
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].id, 2);
  EXPECT_EQ(monitor.occupants(0, 0).size(), 1U);
  EXPECT_TRUE(monitor.occupants(7, 2).empty());
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
