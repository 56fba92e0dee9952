#include <functional>
#include <limits>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/monitor/ZoneMonitor.h>

#include "Frames.h"

namespace orvantis::filter::monitor::testing {
namespace {

using detection::Point;
using detection::Polygon;
using detection::Rectangle;
using detection::Sector;
using detection::Zone;

constexpr std::size_t gate = zoneSlotIndex(0, 0);

std::shared_ptr<Polygon> triangle(const std::string& name, double tipX) {
  return std::make_shared<Polygon>(name, std::vector<Point>{{0, 0}, {0, 20}, {tipX, 0}});
}

ZoneDetector detectorWith(const std::shared_ptr<Zone>& shape, double zMin = 0.0, double zMax = 2.0) {
  ZoneDetector detector;
  detector.setZone(std::make_shared<Zone3dBase>(shape, zMin, zMax), 0, 0);
  return detector;
}

// Whether a zone that is occupied stays so, at (5, 5), when the second detector takes over.
bool keepsState(const ZoneDetector& before, const ZoneDetector& after) {
  ZoneMonitor monitor(before);
  EXPECT_TRUE(monitor.update(ms(0), inGate(1)).isOccupied[gate]);
  const auto lost = monitor.reconfigure(after);
  const auto frame = monitor.update(ms(1), inGate(1));
  // The state is either kept, with no event at all, or given up and found anew.
  EXPECT_EQ(lost.size(), frame.events.size());
  return lost.empty();
}

TEST(ZoneReconfigure, TheSameZoneKeepsItsState) {
  const auto sector = std::make_shared<Sector>("S", -1.0, 2.0, 20.0, Point(1.0, 1.0));
  const auto sameSector = std::make_shared<Sector>("S", -1.0, 2.0, 20.0, Point(1.0, 1.0));
  const std::vector<Point> corners = {{0, 0}, {10, 10}};
  EXPECT_TRUE(keepsState(detectorWith(triangle("T", 20)), detectorWith(triangle("T", 20))));
  EXPECT_TRUE(keepsState(detectorWith(sector), detectorWith(sameSector)));
  EXPECT_TRUE(keepsState(detectorWith(std::make_shared<Rectangle>("R", corners, 30.0)),
                         detectorWith(std::make_shared<Rectangle>("R", corners, 30.0))));
}

TEST(ZoneReconfigure, AnotherNameIsTheSameZone) {
  EXPECT_TRUE(keepsState(detectorWith(triangle("T", 20)), detectorWith(triangle("Other", 20))));
}

TEST(ZoneReconfigure, AChangeOfTheLastBitIsAnotherZone) {
  const double next = std::nextafter(20.0, 21.0);
  const auto sector = [](double minAngle, double maxAngle, double radius, double x, double y) {
    return detectorWith(std::make_shared<Sector>("S", minAngle, maxAngle, radius, Point(x, y)));
  };
  EXPECT_FALSE(keepsState(detectorWith(triangle("T", 20)), detectorWith(triangle("T", next))));
  EXPECT_FALSE(keepsState(detectorWith(triangle("T", 20), 0.0), detectorWith(triangle("T", 20), -0.0)));
  EXPECT_FALSE(keepsState(detectorWith(triangle("T", 20), 0, 20), detectorWith(triangle("T", 20), 0, next)));
  EXPECT_FALSE(keepsState(sector(-1, 2, 20, 0, 0), sector(-1, 2, next, 0, 0)));
  EXPECT_FALSE(keepsState(sector(-1, 2, 20, 0, 0), sector(-1.5, 2, 20, 0, 0)));
  EXPECT_FALSE(keepsState(sector(-1, 2, 20, 0, 0), sector(-1, 2.5, 20, 0, 0)));
  EXPECT_FALSE(keepsState(sector(-1, 2, 20, 0, 0), sector(-1, 2, 20, 0.5, 0)));
  EXPECT_FALSE(keepsState(sector(-1, 2, 20, 0, 0), sector(-1, 2, 20, 0, 0.5)));
}

TEST(ZoneReconfigure, AnotherTypeOfShapeIsAnotherZone) {
  const std::vector<Point> corners = {{0, 0}, {10, 10}};
  std::vector<Point> ring;
  const auto rectangle = std::make_shared<Rectangle>("R", corners, 0.0);
  rectangle->getPolygon(ring);
  EXPECT_FALSE(keepsState(detectorWith(rectangle), detectorWith(std::make_shared<Polygon>("R", ring))));
  EXPECT_FALSE(keepsState(detectorWith(rectangle), detectorWith(std::make_shared<Sector>("R", -3, 3, 20))));
}

// A host's own shape: everything right of an x.
class HalfPlane : public Zone {
 public:
  explicit HalfPlane(double left) : Zone("H"), left_(left) {}
  std::shared_ptr<Zone> makeCopy() const override { return std::make_shared<HalfPlane>(left_); }
  bool within(const polygon&) const override { return false; }
  bool within(const Point& point) const override { return point.x() > left_; }
  bool intersects(const polygon&) const override { return false; }
  bool overlaps(const polygon&) const override { return false; }
  double area() const override { return 0.0; }
  void save(SettingsManager&) const override {}
  void load(SettingsManager&) override {}
  const std::string& type() const override { return name(); }

 private:
  double left_;
};

TEST(ZoneReconfigure, AHostsOwnShapeIsTakenForAnotherZone) {
  const auto shape = std::make_shared<HalfPlane>(1.0);
  EXPECT_FALSE(keepsState(detectorWith(shape), detectorWith(shape)));
}

TEST(ZoneReconfigure, ANotANumberIsTheSameAsItself) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  ZoneDetector detector = detectorWithGate();
  detector.setZone(std::make_shared<Zone3dBase>(triangle("T", nan), 0.0, 2.0), 0, 1);
  detector.setMinPoints(0);
  ZoneMonitor monitor(detector);
  ASSERT_EQ(monitor.update(ms(0), Points{}).events.size(), 2U);
  EXPECT_TRUE(monitor.reconfigure(detector).empty());
}

TEST(ZoneReconfigure, AZoneThatIsGoneClears) {
  ZoneMonitor monitor(detectorWithGate());
  monitor.update(ms(7), inGate(1));
  const auto events = monitor.reconfigure(ZoneDetector());
  ASSERT_EQ(events.size(), 1U);
  EXPECT_FALSE(events[0].isOccupied);
  EXPECT_EQ(events[0].slot.zoneName, "Gate");
  EXPECT_EQ(events[0].slot.fieldName, "Yard");
  EXPECT_EQ(events[0].began, ms(7));
  EXPECT_EQ(events[0].accepted, ms(7));
  EXPECT_FALSE(monitor.update(ms(8), inGate(1)).isOccupied[gate]);
}

TEST(ZoneReconfigure, AClearedZoneThatIsGoneIsNoEvent) {
  ZoneMonitor monitor(detectorWithGate());
  EXPECT_TRUE(monitor.reconfigure(ZoneDetector()).empty());
  monitor.update(ms(7), inGate(1));
  EXPECT_TRUE(monitor.reconfigure(detectorWithGate()).empty());
}

TEST(ZoneReconfigure, ARunningDebounceRunsOn) {
  ZoneDetector detector = detectorWithGate();
  detector.setDebounceTime(ZoneDetector::Milliseconds(100));
  ZoneMonitor monitor(detector);
  monitor.update(ms(0), inGate(1));
  monitor.reconfigure(detector);
  const PointFrame frame = monitor.update(ms(100), inGate(1));
  ASSERT_EQ(frame.events.size(), 1U);
  EXPECT_EQ(frame.events[0].began, ms(0));
}

TEST(ZoneReconfigure, ADebounceOfAnotherZoneBeginsAnew) {
  ZoneDetector detector = detectorWithGate();
  detector.setDebounceTime(ZoneDetector::Milliseconds(100));
  ZoneMonitor monitor(detector);
  monitor.update(ms(0), inGate(1));
  detector.getZone(0, 0)->setZMax(3.0);
  monitor.reconfigure(detector);
  EXPECT_FALSE(monitor.update(ms(150), inGate(1)).isOccupied[gate]);
  EXPECT_TRUE(monitor.update(ms(250), inGate(1)).isOccupied[gate]);
}

TEST(ZoneReconfigure, TheOptionsAndExclusionZonesAreTheNewOnes) {
  ZoneDetector detector = detectorWithGate();
  ZoneMonitor monitor(detector);
  monitor.update(ms(0), inGate(1));
  detector.setTriggerZone(ZoneDetector::TriggerZoneValue::LOW);
  monitor.reconfigure(detector);
  EXPECT_EQ(monitor.update(ms(1), inGate(1)).outputs[0], ZoneDetector::TriggerZoneValue::LOW);
  detector.setMinPoints(2);
  monitor.reconfigure(detector);
  EXPECT_FALSE(monitor.update(ms(2), inGate(1)).isOccupied[gate]);
  EXPECT_TRUE(monitor.update(ms(3), inGate(2)).isOccupied[gate]);
  detector.setDebounceTime(ZoneDetector::Milliseconds(100));
  detector.appendExclusionZone(rectangleZone("Tree", 4.0, 4.0, 6.0, 6.0));
  EXPECT_TRUE(monitor.reconfigure(detector).empty());
  EXPECT_TRUE(monitor.update(ms(4), inGate(2)).isOccupied[gate]);
  EXPECT_FALSE(monitor.update(ms(104), inGate(2)).isOccupied[gate]);
  detector.setEvaluationFieldIndex(6);
  monitor.reconfigure(detector);
  EXPECT_EQ(monitor.activeField(), 6);
}

TEST(ZoneReconfigure, StampsGoOnFromTheLastFrame) {
  ZoneMonitor monitor(detectorWithGate());
  monitor.update(ms(5), inGate(0));
  monitor.reconfigure(detectorWithGate());
  EXPECT_THROW(monitor.update(ms(5), inGate(0)), std::invalid_argument);
}

TEST(ZoneReconfigure, ADetectorThatIsRefusedChangesNothing) {
  ZoneMonitor monitor(detectorWithGate());
  monitor.update(ms(0), inGate(1));
  ZoneDetector refused;
  refused.setEvaluationFieldIndex(200);
  EXPECT_THROW(monitor.reconfigure(refused), std::out_of_range);
  const PointFrame frame = monitor.update(ms(1), inGate(1));
  EXPECT_TRUE(frame.isOccupied[gate]);
  EXPECT_TRUE(frame.events.empty());
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
