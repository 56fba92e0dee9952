#include <memory>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/monitor/ObjectMonitor.h>
#include <filter/monitor/ZoneMonitor.h>

#include "Frames.h"

// Shapes that a host derived from the library's.
namespace orvantis::filter::monitor::testing {
namespace {

using detection::Point;
using detection::Polygon;
using detection::Zone;

std::vector<Point> unitSquare() {
  return {{0, 0}, {0, 1}, {1, 1}, {1, 0}};
}

// Forgot how to copy itself.
class Uncopied : public Polygon {
 public:
  explicit Uncopied(const std::string& name) : Polygon(name, unitSquare()) {}
  std::shared_ptr<Zone> makeCopy() const override { return nullptr; }
};

// A polygon with everything around it, as far as one unit.
class Margin : public Polygon {
 public:
  using Polygon::Polygon;
  std::shared_ptr<Zone> makeCopy() const override { return std::make_shared<Margin>(*this); }
  bool within(const polygon&) const override { return false; }
  bool intersects(const polygon& area) const override {
    for (const PlanarPoint& vertex : area.outer()) {
      if (vertex.x() >= -1 && vertex.x() <= 2 && vertex.y() >= -1 && vertex.y() <= 2) {
        return true;
      }
    }
    return false;
  }
};

ZoneDetector detectorWith(std::shared_ptr<Zone> shape) {
  ZoneDetector detector;
  detector.setZone(std::make_shared<Zone3dBase>(std::move(shape), 0.0, 2.0), 0, 0);
  return detector;
}

template <typename Act>
void expectNoCopy(const Act& act) {
  try {
    act();
    ADD_FAILURE() << "not refused";
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), "The shape of zone \"Gate\" gives no copy of itself");
  }
}

TEST(HostShapes, ThatGiveNoCopyOfThemselvesAreRefusedByEveryStage) {
  const ZoneDetector detector = detectorWith(std::make_shared<Uncopied>("Gate"));
  expectNoCopy([&] { ObjectMonitor monitor(detector); });
  expectNoCopy([&] { ZoneMonitor monitor(detector); });
  expectNoCopy([&] { classify::PointClassifier classifier(detector); });
}

TEST(HostShapes, ThatGiveNoCopyChangeNothingOfAMonitorThatIsReconfigured) {
  const ZoneDetector refused = detectorWith(std::make_shared<Uncopied>("Gate"));
  ObjectMonitor objects(detectorWithGate());
  objects.update(ms(0), {box(7, 5, 5)});
  expectNoCopy([&] { objects.reconfigure(refused); });
  EXPECT_EQ(objects.occupants(0, 0).size(), 1U);
  ZoneMonitor zones(detectorWithGate());
  expectNoCopy([&] { zones.reconfigure(refused); });
  EXPECT_EQ(zones.update(ms(0), inGate(3)).counts[0], 3U);
}

TEST(HostShapes, DerivedFromAPolygonMayReachBeyondItsVertices) {
  ObjectMonitor monitor(detectorWith(std::make_shared<Margin>("Gate", unitSquare())));
  EXPECT_EQ(monitor.update(ms(0), {box(1, 2.5, 0.5), box(2, 3.5, 0.5)}).zones,
            (std::vector<std::uint32_t>{1, 0}));
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
