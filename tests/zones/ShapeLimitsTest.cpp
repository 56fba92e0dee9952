#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <boost/property_tree/exceptions.hpp>
#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone3dBase.h>
#include <settings/SettingsManager.h>

#include "support/Settings.h"
#include "zones/Shapes.h"

namespace orvantis::filter::detection {
namespace {

using Limits = std::numeric_limits<double>;
using testing::points;
using testing::squareOutline;
using testing::verticesOf;

constexpr double pi = 3.141592653589793;

const std::vector<double> notFinite = {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()};
const std::vector<double> extremes = {
    Limits::quiet_NaN(),  Limits::infinity(),    -Limits::infinity(), 0.0,   -0.0,
    Limits::denorm_min(), -Limits::denorm_min(), Limits::min(),       1e308, -1e308,
    Limits::max(),        Limits::lowest()};

TEST(ShapeLimits, APolygonWithACoordinateThatIsNotFiniteBoundsNoRegion) {
  for (const double bad : notFinite) {
    const Polygon polygon("p", points({{0, 0}, {0, 4}, {4, 4}, {bad, 0}}));
    EXPECT_FALSE(polygon.within(Point(1, 3))) << bad;
    EXPECT_FALSE(polygon.within(squareOutline(1, 2))) << bad;
    EXPECT_FALSE(polygon.intersects(squareOutline(1, 2))) << bad;
    EXPECT_FALSE(polygon.overlaps(squareOutline(-1, 2))) << bad;
    EXPECT_EQ(verticesOf(polygon).size(), 4U) << bad;
    EXPECT_FALSE(std::isfinite(polygon.area())) << bad;
  }
}

TEST(ShapeLimits, AnOutlineWithACoordinateThatIsNotFiniteIsNowhere) {
  const Polygon polygon("p", points({{0, 0}, {0, 4}, {4, 4}, {4, 0}}));
  for (const double bad : notFinite) {
    const core::PlanarPolygon argument = testing::outline({{1, 1}, {1, 2}, {2, bad}});
    EXPECT_FALSE(polygon.within(argument)) << bad;
    EXPECT_FALSE(polygon.intersects(argument)) << bad;
    EXPECT_FALSE(polygon.overlaps(argument)) << bad;
  }
}

TEST(ShapeLimits, ARectangleOfNumbersThatAreNotFiniteContainsNothing) {
  for (const double bad : notFinite) {
    for (const Rectangle& rectangle :
         {Rectangle("r", points({{0, 0}, {2, bad}}), 0.0), Rectangle("r", points({{bad, 0}, {2, 1}}), 0.0),
          Rectangle("r", points({{0, 0}, {2, 1}}), bad)}) {
      EXPECT_FALSE(rectangle.within(Point(1, 0.5))) << bad;
      EXPECT_FALSE(rectangle.intersects(squareOutline(-9, 9))) << bad;
      EXPECT_EQ(verticesOf(rectangle).size(), 4U) << bad;
    }
  }
}

TEST(ShapeLimits, ARectangleWhoseCentreIsBeyondTheRangeContainsNothing) {
  const Rectangle rectangle("r", points({{1e308, 0}, {1.5e308, 1}}), 0.0);
  EXPECT_FALSE(rectangle.within(Point(1.2e308, 0.5)));
  EXPECT_FALSE(rectangle.intersects(squareOutline(-9, 9)));
}

TEST(ShapeLimits, AHugeRectangleContainsWhatIsInIt) {
  const Rectangle rectangle("r", points({{-8e307, -8e307}, {8e307, 8e307}}), 0.0);
  EXPECT_TRUE(rectangle.within(Point(0, 0)));
  EXPECT_TRUE(rectangle.within(Point(7e307, -7e307)));
  EXPECT_FALSE(rectangle.within(Point(9e307, 0)));
  EXPECT_TRUE(rectangle.within(squareOutline(-1e307, 1e307)));
}

// What the header of the sector says about a NaN coordinate.
TEST(ShapeLimits, APointWithoutABearingIsOnlyInADiscAndAWrappingSector) {
  for (const Point& point : {Point(Limits::quiet_NaN(), 1), Point(1, Limits::quiet_NaN())}) {
    EXPECT_FALSE(Sector("s", -1, 1, 10).within(point));
    EXPECT_TRUE(Sector("s", 1, -1, 10).within(point));
    EXPECT_TRUE(Sector("s", 1, 1, 10).within(point));
  }
}

TEST(ShapeLimits, AnInfinitePointIsInNoSectorOfFiniteRadius) {
  for (const double infinite : {Limits::infinity(), -Limits::infinity()}) {
    for (const Point& point : {Point(infinite, 1), Point(1, infinite), Point(infinite, infinite)}) {
      EXPECT_FALSE(Sector("s", -1, 1, 10).within(point));
      EXPECT_FALSE(Sector("s", 1, -1, 10).within(point));
      EXPECT_FALSE(Sector("s", 1, 1, 1e100).within(point));
    }
  }
}

TEST(ShapeLimits, ASectorOfInfiniteRadiusIsAWedge) {
  const Sector wedge("s", -1, 1, Limits::infinity());
  EXPECT_TRUE(wedge.within(Point(1e308, 0)));
  EXPECT_TRUE(wedge.within(Point(Limits::infinity(), 0)));
  EXPECT_FALSE(wedge.within(Point(-1e308, 0)));
  EXPECT_EQ(wedge.area(), Limits::infinity());
}

TEST(ShapeLimits, ARadiusThatIsNaNNeverKeepsAPointOut) {
  const Sector sector("s", -1, 1, Limits::quiet_NaN());
  EXPECT_TRUE(sector.within(Point(1e9, 0)));
  EXPECT_FALSE(sector.within(Point(-1e9, 0)));
}

TEST(ShapeLimits, AnglesThatAreNotFiniteAreStoredAsNaNAndTakeTheWrappingBranch) {
  for (const double bad : notFinite) {
    const Sector sector("s", bad, 1, 10);
    double minAngle = 0;
    double maxAngle = 0;
    double radius = 0;
    sector.getSector(minAngle, maxAngle, radius);
    EXPECT_TRUE(std::isnan(minAngle)) << bad;
    EXPECT_EQ(maxAngle, 1.0) << bad;
    EXPECT_TRUE(sector.within(Point(5, 0))) << bad;
    EXPECT_TRUE(sector.within(Point(-5, 0))) << bad;
    EXPECT_FALSE(sector.within(Point(11, 0))) << bad;
    EXPECT_TRUE(std::isnan(sector.area())) << bad;

    const Sector other("s", 1, bad, 10);
    EXPECT_TRUE(other.within(Point(5, 0))) << bad;
    EXPECT_TRUE(other.within(Point(-5, 0))) << bad;
    EXPECT_FALSE(other.within(Point(11, 0))) << bad;
    EXPECT_TRUE(std::isnan(other.area())) << bad;
  }
}

TEST(ShapeLimits, HugeAnglesStayInTheInterval) {
  for (const double huge : {1e15, -1e15, 1e16, 1e100, -1e100, 1e308, Limits::max(), Limits::lowest()}) {
    double minAngle = 0;
    double maxAngle = 0;
    double radius = 0;
    Sector("s", huge, -huge, 10).getSector(minAngle, maxAngle, radius);
    EXPECT_GE(minAngle, -pi) << huge;
    EXPECT_LT(minAngle, pi) << huge;
    EXPECT_GE(maxAngle, -pi) << huge;
    EXPECT_LT(maxAngle, pi) << huge;
  }
}

TEST(ShapeLimits, TinyDistancesUnderflowToTheOrigin) {
  const Sector empty("s", -1, 1, 0.0);
  EXPECT_TRUE(empty.within(Point(Limits::denorm_min(), 0))) << "its square is zero";
  EXPECT_FALSE(empty.within(Point(1e-150, 0)));
  EXPECT_TRUE(Sector("s", 0, 0, 1e-200).within(Point(-1e-170, 0))) << "both squares are zero";
}

// Every call with every extreme number in every place: an answer each time, and the sanitizers silent.
TEST(ShapeLimits, EveryCallAnswersEveryExtremeNumber) {
  std::vector<std::shared_ptr<Zone>> zones;
  for (const double a : extremes) {
    for (const double b : extremes) {
      zones = {std::make_shared<Polygon>("p", points({{0, 0}, {a, b}, {4, 4}, {b, 0}})),
               std::make_shared<Rectangle>("r", points({{a, 0}, {2, b}}), a),
               std::make_shared<Rectangle>("r", points({{0, 0}, {2, 1}}), b),
               std::make_shared<Sector>("s", a, b, 10.0),
               std::make_shared<Sector>("s", -1.0, 1.0, a, Point(a, b))};
      const core::PlanarPolygon argument = testing::outline({{b, a}, {1, 1}, {a, 0}, {2, 1}});
      for (const auto& zone : zones) {
        const bool within = zone->within(argument);
        const bool intersects = zone->intersects(argument);
        const bool overlaps = zone->overlaps(argument);
        if (zone->type() == "sector") {
          EXPECT_EQ(overlaps, intersects) << a << " " << b;
          EXPECT_FALSE(within && intersects) << a << " " << b;
        } else if (!std::isfinite(a) || !std::isfinite(b)) {
          EXPECT_FALSE(within || intersects || overlaps) << a << " " << b;
          EXPECT_FALSE(zone->within(Point(a, b))) << a << " " << b;
        }
        const std::shared_ptr<Zone> copy = zone->makeCopy();
        const double area = zone->area();
        EXPECT_TRUE(copy->area() == area || std::isnan(area)) << zone->type() << " " << a << " " << b;
        const Zone3dBase volume(zone, a, b);
        EXPECT_EQ(volume.within(1, 1, 1), a <= 1 && 1 <= b && zone->within(Point(1, 1))) << a << " " << b;
      }
    }
  }
}

TEST(ShapeLimits, ANumberThatIsNotFiniteIsSavedAsTextThatLoadRefuses) {
  for (const double bad : notFinite) {
    const std::vector<std::shared_ptr<Zone>> zones = {
        std::make_shared<Polygon>("p", points({{0, 0}, {bad, 1}, {1, 0}})),
        std::make_shared<Rectangle>("r", points({{0, 0}, {2, 1}}), bad),
        std::make_shared<Sector>("s", 0.0, bad, 1.0), std::make_shared<Sector>("s", 0.0, 1.0, bad)};
    for (const auto& zone : zones) {
      SettingsManager settings;
      zone->save(settings);
      SettingsManager reread;
      testing::loadText(reread, testing::saveText(settings));
      EXPECT_THROW(zone->load(reread), boost::property_tree::ptree_bad_data) << zone->type() << " " << bad;
    }
  }
}

TEST(ShapeLimits, FiniteExtremesSurviveSaveAndLoadAndOthersDoNotConvert) {
  for (const double extreme : extremes) {
    const Polygon polygon("p", points({{extreme, 0}, {1, 1}, {2, 0}}));
    SettingsManager settings;
    polygon.save(settings);
    SettingsManager reread;
    testing::loadText(reread, testing::saveText(settings));
    if (std::isfinite(extreme)) {
      const Polygon loaded("loaded", reread);
      EXPECT_EQ(std::bit_cast<std::uint64_t>(verticesOf(loaded).front().first),
                std::bit_cast<std::uint64_t>(extreme))
          << extreme;
    } else {
      EXPECT_THROW(Polygon("loaded", reread), boost::property_tree::ptree_bad_data) << extreme;
    }
  }
}

}  // namespace
}  // namespace orvantis::filter::detection
