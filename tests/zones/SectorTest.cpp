#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <boost/property_tree/exceptions.hpp>
#include <gtest/gtest.h>

#include <filter/detection/Sector.h>
#include <settings/SettingsManager.h>

#include "support/LogCapture.h"
#include "support/Settings.h"
#include "zones/CurrentPath.h"
#include "zones/Shapes.h"

namespace orvantis::filter::detection {
namespace {

using testing::Coordinates;
using testing::currentPath;
using testing::loadText;
using testing::LogCapture;
using testing::outline;
using testing::saveText;
using testing::squareOutline;

constexpr double pi = 3.141592653589793;

struct Opening {
  double minAngle = 9.0;
  double maxAngle = 9.0;
  double radius = 9.0;

  friend bool operator==(const Opening&, const Opening&) = default;
};

Opening openingOf(const Sector& sector) {
  Opening opening;
  sector.getSector(opening.minAngle, opening.maxAngle, opening.radius);
  return opening;
}

const Sector forward("forward", -pi / 4, pi / 4, 10.0);
const Sector backward("backward", 3 * pi / 4, -3 * pi / 4, 10.0);

TEST(Sector, ContainsItsArcAndItsBearings) {
  EXPECT_TRUE(forward.within(Point(5, 0)));
  EXPECT_TRUE(forward.within(Point(5, 5)));
  EXPECT_TRUE(forward.within(Point(5, -5)));
  EXPECT_FALSE(forward.within(Point(0, 5)));
  EXPECT_FALSE(forward.within(Point(-5, 0)));
  EXPECT_TRUE(forward.within(Point(10, 0)));
  EXPECT_FALSE(forward.within(Point(10.001, 0)));
}

TEST(Sector, ThatWrapsRunsThroughMinusXAndLeavesItsBearingsOut) {
  EXPECT_TRUE(backward.within(Point(-5, 0)));
  EXPECT_TRUE(backward.within(Point(-5, -0.0)));
  EXPECT_TRUE(backward.within(Point(-10, 0)));
  EXPECT_FALSE(backward.within(Point(5, 0)));
  EXPECT_FALSE(backward.within(Point(-5, 5))) << "bearing exactly 3 pi / 4";
  EXPECT_FALSE(backward.within(Point(-5, -5))) << "bearing exactly -3 pi / 4";
  EXPECT_TRUE(backward.within(Point(-5, 4.999)));
  EXPECT_FALSE(backward.within(Point(-10.001, 0)));
}

TEST(Sector, TheOriginHasBearingZero) {
  EXPECT_TRUE(forward.within(Point(0, 0)));
  EXPECT_FALSE(backward.within(Point(0, 0)));
  EXPECT_FALSE(Sector("left", 0.5, 1.5, 10.0).within(Point(0, 0)));
  EXPECT_TRUE(Sector("to zero", -1.0, 0.0, 10.0).within(Point(0, 0)));
}

TEST(Sector, TheOriginHasBearingZeroWhateverTheSignsOfItsZeros) {
  for (const Point& point : {Point(-0.0, 0.0), Point(0.0, -0.0), Point(-0.0, -0.0)}) {
    EXPECT_TRUE(forward.within(point));
    EXPECT_FALSE(backward.within(point));
    EXPECT_FALSE(Sector("from minus pi", -pi, -3.0, 10.0).within(point));
  }
}

TEST(Sector, TheBearingOfMinusXIsPiOrMinusPiByTheSignOfItsZero) {
  const Sector below("below", -pi, 0.0, 10.0);
  EXPECT_FALSE(below.within(Point(-5, 0.0))) << "pi is beyond both bearings";
  EXPECT_TRUE(below.within(Point(-5, -0.0)));
}

// -0.0 - 0.0 is -0.0, and -0.0 - -0.0 is 0.0.
TEST(Sector, AnOriginOfMinusZeroIsKeptAndTurnsTheBearingOfMinusXToPi) {
  const auto expectMinusZero = [](const Sector& sector) {
    EXPECT_TRUE(std::signbit(sector.getOrigin().x()));
    EXPECT_TRUE(std::signbit(sector.getOrigin().y()));
    EXPECT_FALSE(sector.within(Point(-5, -0.0))) << "pi is beyond both bearings";
    EXPECT_FALSE(sector.within(Point(-5, 0.0)));
    EXPECT_TRUE(sector.within(Point(-5, -1e-300)));
  };
  expectMinusZero(Sector("made", -pi, 0.0, 10.0, Point(-0.0, -0.0)));
  Sector set("set", -pi, 0.0, 10.0);
  EXPECT_TRUE(set.within(Point(-5, -0.0)));
  set.setOrigin(-0.0, -0.0);
  expectMinusZero(set);
  expectMinusZero(Sector(set));
  EXPECT_TRUE(set.makeCopy()->within(Point(-5, -0.0))) << "the origin of a made copy is (0, 0)";
  // The bearing of the origin is 0, whatever the signs of the zeros.
  for (const Point& point : {Point(0.0, 0.0), Point(-0.0, 0.0), Point(0.0, -0.0), Point(-0.0, -0.0)}) {
    EXPECT_TRUE(set.within(point));
    EXPECT_FALSE(Sector("from minus pi", -pi, -3.0, 10.0, Point(-0.0, -0.0)).within(point));
  }
}

TEST(Sector, EqualAnglesMeanTheWholeDisc) {
  const Sector disc("disc", 0.0, 2 * pi, 10.0);
  EXPECT_EQ(openingOf(disc), (Opening{0.0, 0.0, 10.0}));
  for (const auto& [x, y] :
       Coordinates{{5, 0}, {0, 5}, {-5, 0}, {0, -5}, {-7, 7}, {10, 0}, {-10, 0}, {0, 10}, {0, 0}}) {
    EXPECT_TRUE(disc.within(Point(x, y))) << x << " " << y;
  }
  EXPECT_FALSE(disc.within(Point(0, 10.001)));
  EXPECT_EQ(disc.area(), 0.0);
}

TEST(Sector, AnglesWithinATenThousandthMeanTheWholeDisc) {
  EXPECT_TRUE(Sector("disc", 1.0, 1.00009, 10.0).within(Point(-5, 0)));
  EXPECT_TRUE(Sector("disc", 1.00009, 1.0, 10.0).within(Point(-5, 0)));
  EXPECT_FALSE(Sector("thin", 1.0, 1.00011, 10.0).within(Point(-5, 0)));
  EXPECT_TRUE(Sector("almost all", 1.00011, 1.0, 10.0).within(Point(-5, 0)));
  EXPECT_FALSE(Sector("almost all", 1.00011, 1.0, 10.0).within(Point(std::cos(1.00005), std::sin(1.00005))));
}

TEST(Sector, AnglesAreNormalisedFromMinusPiInclusiveToPiExclusive) {
  const std::vector<std::array<double, 2>> angles = {
      {3 * pi / 2, -pi / 2}, {pi, -pi},      {-pi, -pi},       {7 * pi / 2, -pi / 2}, {0.0, 0.0},
      {2 * pi, 0.0},         {-2 * pi, 0.0}, {pi / 4, pi / 4}, {-pi / 4, -pi / 4}};
  for (const auto& [given, stored] : angles) {
    EXPECT_EQ(openingOf(Sector("s", given, 1.0, 1.0)).minAngle, stored) << given;
    EXPECT_EQ(openingOf(Sector("s", 1.0, given, 1.0)).maxAngle, stored) << given;
    EXPECT_EQ(openingOf(Sector("s", given, 1.0, 1.0, Point(3, 4))).minAngle, stored) << given;
  }
  EXPECT_LT(openingOf(Sector("s", std::nextafter(-pi, -4.0), 1.0, 1.0)).minAngle, pi);
  EXPECT_GT(openingOf(Sector("s", std::nextafter(-pi, -4.0), 1.0, 1.0)).minAngle, 3.14);
}

TEST(Sector, NormalisedAnglesStayInTheIntervalAndStayWhatTheyAre) {
  std::mt19937_64 engine(44);
  std::uniform_real_distribution<double> angle(-100, 100);
  for (int i = 0; i < 20000; ++i) {
    const double given = angle(engine);
    const Opening once = openingOf(Sector("s", given, 0.0, 1.0));
    ASSERT_GE(once.minAngle, -pi) << given;
    ASSERT_LT(once.minAngle, pi) << given;
    ASSERT_NEAR(std::sin(once.minAngle), std::sin(given), 1e-13) << given;
    ASSERT_NEAR(std::cos(once.minAngle), std::cos(given), 1e-13) << given;
    ASSERT_EQ(openingOf(Sector("s", once.minAngle, 0.0, 1.0)).minAngle, once.minAngle) << given;
  }
}

TEST(Sector, AreaIsThatOfTheDifferenceOfTheStoredAngles) {
  EXPECT_DOUBLE_EQ(forward.area(), pi / 2 * 0.5 * 100);
  EXPECT_DOUBLE_EQ(backward.area(), 0.5 * (3 * pi / 2) * 100);
  EXPECT_DOUBLE_EQ(Sector("s", 0.0, 1.0, -4.0).area(), 8.0);
}

TEST(Sector, SetOriginMovesTheDisc) {
  Sector sector = forward;
  sector.setOrigin(100, 0);
  EXPECT_TRUE(sector.within(Point(105, 0)));
  EXPECT_FALSE(sector.within(Point(5, 0)));
  EXPECT_TRUE(sector.within(Point(110, 0)));
  EXPECT_FALSE(sector.within(Point(95, 0)));
  EXPECT_EQ(sector.getOrigin().x(), 100.0);
  EXPECT_EQ(sector.getOrigin().y(), 0.0);
}

TEST(Sector, AMadeCopyTestsAroundZeroAgain) {
  Sector sector = forward;
  sector.setOrigin(100, 0);
  sector.setName("renamed");
  const auto made = std::dynamic_pointer_cast<Sector>(sector.makeCopy());
  ASSERT_NE(made, nullptr);
  EXPECT_FALSE(made->within(Point(105, 0)));
  EXPECT_TRUE(made->within(Point(5, 0)));
  EXPECT_EQ(made->name(), "renamed");
  EXPECT_EQ(openingOf(*made), openingOf(sector));
}

TEST(Sector, CopiesAndMovesKeepTheOrigin) {
  const Sector sector("s", -pi / 4, pi / 4, 10.0, Point(100, 0));
  const Sector copy(sector);
  EXPECT_TRUE(copy.within(Point(105, 0)));
  Sector assigned("other", 1, 2, 3);
  assigned = sector;
  EXPECT_TRUE(assigned.within(Point(105, 0)));
  EXPECT_EQ(openingOf(assigned), openingOf(sector));
  const Sector moved(std::move(assigned));
  EXPECT_TRUE(moved.within(Point(105, 0)));
}

TEST(Sector, ARadiusIsTakenAsGiven) {
  EXPECT_EQ(openingOf(Sector("s", 0, 1, -7.5)).radius, -7.5);
  const Sector point("s", -1, 1, 0.0);
  EXPECT_TRUE(point.within(Point(0, 0)));
  EXPECT_FALSE(point.within(Point(1e-9, 0)));
  EXPECT_TRUE(Sector("s", -1, 1, -10.0).within(Point(5, 0))) << "only its square counts";
}

TEST(SectorOutline, IsWithinWhenEveryVertexIs) {
  EXPECT_TRUE(forward.within(outline({{2, 1}, {8, 0}, {2, -1}})));
  EXPECT_TRUE(forward.within(outline({{2, 1}, {10, 0}, {2, -1}, {2, 1}})));
  EXPECT_FALSE(forward.within(outline({{2, 1}, {11, 0}, {2, -1}})));
  EXPECT_TRUE(forward.within(outline({{2, 1}}))) << "even of fewer than three vertices";
}

TEST(SectorOutline, AnEmptyRingIsWithinAndDoesNotIntersect) {
  EXPECT_TRUE(forward.within(core::PlanarPolygon()));
  EXPECT_FALSE(forward.intersects(core::PlanarPolygon()));
  EXPECT_FALSE(forward.overlaps(core::PlanarPolygon()));
}

TEST(SectorOutline, EdgesAndHolesAreNotLookedAt) {
  // The edge between the two vertices leaves the wrapping sector through the +x side.
  const Sector wide("wide", pi / 4, -pi / 4, 10.0);
  EXPECT_TRUE(wide.within(outline({{1, 5}, {1, -5}, {-5, 0}})));
  core::PlanarPolygon holed = outline({{2, 1}, {8, 0}, {2, -1}});
  holed.inners().push_back(outline({{90, 90}, {91, 91}, {92, 90}}).outer());
  EXPECT_TRUE(forward.within(holed));
  EXPECT_FALSE(forward.intersects(holed));
}

TEST(SectorOutline, IntersectsWhenItStraddlesTheBorder) {
  const core::PlanarPolygon inside = outline({{2, 1}, {8, 0}, {2, -1}});
  const core::PlanarPolygon oneInside = outline({{5, 0}, {20, 1}, {20, -1}});
  const core::PlanarPolygon outside = outline({{20, 0}, {30, 1}, {30, -1}});
  const core::PlanarPolygon around = squareOutline(-100, 100);
  EXPECT_FALSE(forward.intersects(inside));
  EXPECT_TRUE(forward.intersects(oneInside));
  EXPECT_FALSE(forward.intersects(outside));
  EXPECT_FALSE(forward.intersects(around));
  EXPECT_FALSE(forward.overlaps(inside));
  EXPECT_TRUE(forward.overlaps(oneInside));
  EXPECT_FALSE(forward.overlaps(outside));
  EXPECT_FALSE(forward.overlaps(around));
}

core::PlanarPolygon vertices(int numInside, int numOutside) {
  core::PlanarPolygon polygon;
  for (int i = 0; i < numInside; ++i) {
    polygon.outer().emplace_back(5, 0);
  }
  for (int i = 0; i < numOutside; ++i) {
    polygon.outer().emplace_back(50, 0);
  }
  return polygon;
}

TEST(SectorOutline, VerticesAreCountedModulo65536) {
  EXPECT_TRUE(forward.intersects(vertices(65535, 1)));
  EXPECT_FALSE(forward.intersects(vertices(65536, 1)));
  EXPECT_TRUE(forward.intersects(vertices(65537, 1)));
  EXPECT_FALSE(forward.intersects(vertices(1, 65536)));
  EXPECT_TRUE(forward.intersects(vertices(1, 65537)));
  EXPECT_FALSE(forward.overlaps(vertices(1, 65536)));
}

// Derived classes may answer points their own way; the polygon questions ask them.
class RightHalfPlane : public Sector {
 public:
  RightHalfPlane() : Sector("derived", 0, 0, 0) {}
  using Sector::within;
  bool within(const Point& point) const override { return point.x() >= 0; }
};

class AlwaysIntersects : public Sector {
 public:
  AlwaysIntersects() : Sector("derived", 0, 0, 0) {}
  bool intersects(const polygon&) const override { return true; }
};

TEST(SectorOutline, VerticesAreAskedThroughTheVirtualPointTest) {
  const RightHalfPlane zone;
  EXPECT_TRUE(zone.within(squareOutline(1, 100)));
  EXPECT_FALSE(zone.within(squareOutline(-1, 100)));
  EXPECT_TRUE(zone.intersects(squareOutline(-1, 100)));
  EXPECT_TRUE(zone.overlaps(squareOutline(-1, 100)));
  EXPECT_TRUE(AlwaysIntersects().overlaps(core::PlanarPolygon())) << "overlaps asks the virtual intersects";
}

TEST(SectorSave, WritesShapeAnglesAndRadiusAndNotTheOrigin) {
  const Sector sector("s", -0.5, 1.5, 10.0, Point(3, 4));
  SettingsManager settings;
  const LogCapture log(LogLevel::Debug);
  sector.save(settings);
  EXPECT_EQ(log.texts(LogLevel::Debug),
            (std::vector<std::string>{"set .shape to: sector", "set Sector.minAngle to: -0.5",
                                      "set Sector.maxAngle to: 1.5", "set Sector.radius to: 10"}));
  EXPECT_EQ(currentPath(settings), "");
  settings.pathPush("Sector");
  EXPECT_EQ(settings.getTree().get_child("Sector").size(), 3U);
}

TEST(SectorSave, GivesTheDocumentedEntry) {
  SettingsManager settings;
  Sector("s", 0.0, -pi / 2, 10.0).save(settings);
  SettingsManager expected;
  loadText(
      expected,
      R"({"shape": "sector", "Sector": {"minAngle": 0, "maxAngle": -1.5707963267948966, "radius": 10}})");
  for (const char* key : {"Sector.minAngle", "Sector.maxAngle", "Sector.radius"}) {
    EXPECT_EQ(settings.get<double>(key), expected.get<double>(key)) << key;
  }
  EXPECT_EQ(settings.get<std::string>("shape"), "sector");
}

TEST(SectorSave, WritesAWholeDiscWithAnOpeningOfTwoPi) {
  SettingsManager settings;
  Sector("s", 0.0, 2 * pi, 10.0).save(settings);
  EXPECT_EQ(settings.get<double>("Sector.minAngle"), 0.0);
  EXPECT_EQ(settings.get<double>("Sector.maxAngle"), 6.283185307179586);
  SettingsManager turned;
  Sector("s", 1.0, 1.00005, 10.0).save(turned);
  EXPECT_DOUBLE_EQ(turned.get<double>("Sector.maxAngle"), 1.00005 + 2 * pi);
}

TEST(SectorLoad, ReadsMaxAngleThenMinAngleThenRadius) {
  SettingsManager settings;
  loadText(settings, R"({"Sector": {"minAngle": -0.5, "maxAngle": 1.5, "radius": 10}})");
  const LogCapture log;
  const Sector sector("s", settings);
  EXPECT_EQ(log.texts(LogLevel::Trace),
            (std::vector<std::string>{"got Sector.maxAngle, value: 1.5", "got Sector.minAngle, value: -0.5",
                                      "got Sector.radius, value: 10"}));
  EXPECT_EQ(currentPath(settings), "");
  EXPECT_EQ(openingOf(sector).radius, 10.0);
  EXPECT_TRUE(sector.within(Point(5, 0)));
}

TEST(SectorLoad, NormalisesTheAngles) {
  SettingsManager settings;
  loadText(settings,
           R"({"Sector": {"minAngle": 3.141592653589793, "maxAngle": 10.995574287564276, "radius": 1}})");
  EXPECT_EQ(openingOf(Sector("s", settings)), (Opening{-pi, -pi / 2, 1.0}));
}

TEST(SectorLoad, KeepsTheOrigin) {
  SettingsManager settings;
  loadText(settings,
           R"({"Sector": {"minAngle": 0, "maxAngle": 0, "radius": 1, "origin": {"x": 7, "y": 8}}})");
  Sector sector("s", 0, 1, 5, Point(100, 50));
  sector.load(settings);
  EXPECT_TRUE(sector.within(Point(100.5, 50)));
  EXPECT_FALSE(sector.within(Point(0, 0)));
  EXPECT_TRUE(Sector("from settings", settings).within(Point(-0.5, 0)));
}

TEST(SectorLoad, AMissingRadiusLeavesTheNewAnglesAndThePathInside) {
  for (const char* document : {R"({"Sector": {"minAngle": -0.5, "maxAngle": 1.5}})",
                               R"({"Sector": {"minAngle": -0.5, "maxAngle": 1.5, "radius": "wide"}})"}) {
    SettingsManager settings;
    loadText(settings, document);
    Sector sector("s", 0.25, 0.75, 5.0);
    EXPECT_THROW(sector.load(settings), boost::property_tree::ptree_error);
    EXPECT_EQ(openingOf(sector), openingOf(Sector("expected", -0.5, 1.5, 5.0)));
    EXPECT_EQ(currentPath(settings), "Sector");
  }
}

TEST(SectorLoad, AMissingAngleChangesNothing) {
  for (const char* document :
       {R"({"Sector": {"minAngle": -0.5, "radius": 1}})", R"({"Sector": {"maxAngle": 1.5, "radius": 1}})",
        R"({"Sector": {"minAngle": "a", "maxAngle": 1.5, "radius": 1}})", "{}"}) {
    SettingsManager settings;
    loadText(settings, document);
    Sector sector("s", 0.25, 0.75, 5.0);
    const Opening before = openingOf(sector);
    EXPECT_THROW(sector.load(settings), boost::property_tree::ptree_error) << document;
    EXPECT_EQ(openingOf(sector), before) << document;
    EXPECT_EQ(currentPath(settings), "Sector") << document;
    EXPECT_THROW(Sector("constructed", settings), boost::property_tree::ptree_error) << document;
  }
}

TEST(SectorRoundTrip, RestoresWhatTheGetterGaveBitForBit) {
  std::mt19937_64 engine(45);
  std::uniform_real_distribution<double> angle(-10, 10);
  std::uniform_real_distribution<double> radius(-100, 100);
  for (int i = 0; i < 2000; ++i) {
    const double minAngle = angle(engine);
    const Sector sector("s", minAngle, i % 10 == 0 ? minAngle : angle(engine), radius(engine));
    SettingsManager settings;
    sector.save(settings);
    SettingsManager reread;
    loadText(reread, saveText(settings));
    const Opening expected = openingOf(sector);
    const Opening loaded = openingOf(Sector("loaded", reread));
    ASSERT_EQ(std::bit_cast<std::uint64_t>(loaded.minAngle), std::bit_cast<std::uint64_t>(expected.minAngle))
        << i;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(loaded.radius), std::bit_cast<std::uint64_t>(expected.radius))
        << i;
    if (i % 10 == 0) {
      // Two pi were added and taken away again: still a whole disc.
      ASSERT_NEAR(loaded.maxAngle, expected.maxAngle, 1e-14) << i;
    } else {
      ASSERT_EQ(std::bit_cast<std::uint64_t>(loaded.maxAngle),
                std::bit_cast<std::uint64_t>(expected.maxAngle))
          << i;
    }
  }
}

}  // namespace
}  // namespace orvantis::filter::detection
