#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <numbers>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/monitor/ObjectMonitor.h>

#include "Frames.h"
#include "monitor/Bounds.h"
#include "monitor/BoxContact.h"
#include "monitor/PolygonRing.h"
#include "monitor/SectorContact.h"

// The monitor has to say of every object and zone what the zone itself says when it is asked: for boxes and
// other footprints, near the borders of zones of every shape and on them, near the origin and far from it.
namespace orvantis::filter::monitor::testing {
namespace {

using detection::Point;
using detection::Polygon;
using detection::Rectangle;
using detection::Sector;
using detection::Zone;

bool isIn(const Zone3dBase& zone, const TrackedObject& object) {
  if (!(zone.getZMin() <= zone.getZMax() && zone.getZMin() <= object.zMax && object.zMin <= zone.getZMax())) {
    return false;
  }
  const PlanarPolygon footprint = object.footprint.getBoostPolygon();
  const Zone& shape = *zone.getZone2d();
  if (const auto* sector = dynamic_cast<const Sector*>(&shape)) {
    return shareAnyPoint(*sector, footprint);
  }
  // What is apart by an ulp is apart, where the relations of polygons take such a gap for none.
  return !areApart(boundsOf(ringOf(dynamic_cast<const Polygon&>(shape))), boundsOf(footprint.outer())) &&
         (shape.within(footprint) || shape.intersects(footprint));
}

// Where numbers lie: anywhere, on whole numbers, or beside them by a hair.
enum class Grain { Any, Whole, Almost };

class Scene {
 public:
  Scene(std::uint64_t seed, double offset, Grain grain) : random_(seed), offset_(offset), grain_(grain) {}

  ZoneDetector detector() {
    ZoneDetector detector;
    for (int i = 0; i < 24; ++i) {
      const double zMin = whole(-2, 2);
      detector.setZone(std::make_shared<Zone3dBase>(shape(), zMin, zMin + whole(-1, 3)), i / 3, i % 3);
    }
    return detector;
  }

  TrackedObject object() {
    const PlanarPoint place = somewhere(12.0);
    const double zMin = whole(-3, 3);
    return {-1, footprintAt(place), zMin, zMin + whole(0, 2), ""};
  }

 private:
  double whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
  double number(double size) {
    const double any = std::uniform_real_distribution<double>(-size, size)(random_);
    const double hair = grain_ == Grain::Almost ? std::pow(10.0, whole(-16, -5)) * whole(-1, 1) : 0.0;
    return grain_ == Grain::Any ? any : std::round(any) + hair;
  }
  PlanarPoint somewhere(double size) { return {offset_ + number(size), number(size) - offset_}; }
  Point zonePoint(double size) {
    const PlanarPoint place = somewhere(size);
    return {place.x(), place.y()};
  }

  std::shared_ptr<Zone> shape() {
    switch (static_cast<int>(whole(0, 4))) {
      case 0:
        return std::make_shared<Rectangle>("R", std::vector{zonePoint(10.0), zonePoint(10.0)},
                                           grain_ == Grain::Any ? 10.0 * number(18.0) : 90.0 * whole(0, 3));
      case 1:
        return std::make_shared<Sector>("S", number(4.0), number(4.0), std::abs(number(8.0)),
                                        zonePoint(10.0));
      case 2: {
        // Whatever it looks like: it may cross or touch itself.
        std::vector<Point> vertices;
        for (int i = 0, size = static_cast<int>(whole(3, 7)); i < size; ++i) {
          vertices.push_back(zonePoint(10.0));
        }
        return std::make_shared<Polygon>("P", vertices);
      }
      default: {
        // A star about a point: convex or not.
        const Point centre = zonePoint(8.0);
        std::vector<Point> vertices;
        const int size = static_cast<int>(whole(3, 16));
        for (int i = 0; i < size; ++i) {
          const double bearing = 2.0 * std::numbers::pi * i / size;
          const double radius = 4.0 + number(3.0);
          vertices.emplace_back(centre.x() + radius * std::cos(bearing),
                                centre.y() + radius * std::sin(bearing));
        }
        return std::make_shared<Polygon>("P", vertices);
      }
    }
  }

  core::State footprintAt(const PlanarPoint& place) {
    const double length = std::abs(number(4.0));
    const double width = std::abs(number(2.0));
    switch (static_cast<int>(whole(0, 5))) {
      case 0:
        return core::State(ring({{place.x() - length, place.y()},
                                 {place.x() + 1.0, place.y() + width},
                                 {place.x(), place.y() - 1.0}}));
      case 1:
        return core::State(place.x(), place.y(), 0.0, width, 0.0);
      case 2:
        return core::State(place.x(), place.y(), 10.0 * length, width, number(3.0));
      default:
        return core::State(place.x(), place.y(), length, width, grain_ == Grain::Any ? number(4.0) : 0.0);
    }
  }

  std::mt19937_64 random_;
  double offset_;
  Grain grain_;
};

TEST(ObjectDifference, ThereIsNoneToTheZonesThemselves) {
  std::uint64_t seed = 500;
  std::size_t inside = 0;
  std::size_t pairs = 0;
  for (const double offset : {0.0, 4.5e6}) {
    for (const Grain grain : {Grain::Any, Grain::Whole, Grain::Almost}) {
      for (int scene = 0; scene < 40; ++scene) {
        Scene site(++seed, offset, grain);
        const ZoneDetector detector = site.detector();
        std::vector<TrackedObject> objects;
        for (int i = 0; i < 60; ++i) {
          objects.push_back(site.object());
        }
        ObjectMonitor monitor(detector);
        const ObjectFrame frame = monitor.update(ms(0), objects);
        for (std::size_t i = 0; i < objects.size(); ++i) {
          for (int slot = 0; slot < 24; ++slot) {
            const bool expected = isIn(*detector.getZone(slot / 3, slot % 3), objects[i]);
            ASSERT_EQ((frame.zones[i] >> slot & 1U) != 0, expected)
                << "seed " << seed << ", object " << i << ", zone " << slot;
            inside += expected ? 1U : 0U;
            ++pairs;
          }
        }
      }
    }
  }
  EXPECT_GT(pairs, 300'000U);
  EXPECT_GT(inside, 15'000U);
}

// The quick way may leave a question to the exact one without being wrong, but it must hardly ever do so.
TEST(ObjectDifference, NearlyAllBoxesNeedNoMoreThanTheQuickWay) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> any(-10.0, 10.0);
  const auto contact = BoxContact::of({{-5, -5}, {-6, 4}, {0, 1}, {5, 7}, {4, -4}});
  ASSERT_TRUE(contact.has_value());
  int answers = 0;
  for (int i = 0; i < 10'000; ++i) {
    const core::State box(any(random), any(random), 4.5, 1.8, any(random));
    answers += contact->sharesAnyPoint(*boxOf(box)).has_value() ? 1 : 0;
  }
  EXPECT_EQ(answers, 10'000);
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
