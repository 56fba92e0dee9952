#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/property_tree/exceptions.hpp>
#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone3dBase.h>
#include <logging/LoggingManager.h>
#include <settings/SettingsManager.h>

#include "support/AllocationCounter.h"
#include "support/LogCapture.h"
#include "support/Settings.h"
#include "zones/CurrentPath.h"
#include "zones/Shapes.h"

namespace orvantis::filter::detection {
namespace {

using testing::AllocationCounter;
using testing::currentPath;
using testing::loadText;
using testing::LogCapture;
using testing::nameOf;
using testing::outline;
using testing::points;
using testing::Record;
using testing::saveText;
using testing::squareOutline;

std::shared_ptr<Polygon> square() {
  return std::make_shared<Polygon>("square", points({{0, 0}, {0, 4}, {4, 4}, {4, 0}}));
}

const char* const squareEntry =
    R"({"name": "yard", "shape": "polygon", "zMin": 1, "zMax": 3,
        "Polygon": {"Point": [{"x": 0, "y": 0}, {"x": 0, "y": 4}, {"x": 4, "y": 4}, {"x": 4, "y": 0}]}})";

// A shape that counts how often it is asked.
class AskedShape : public Polygon {
 public:
  AskedShape() : Polygon("asked") {}
  bool within(const polygon&) const override { return ask(); }
  bool within(const Point&) const override { return ask(); }
  bool intersects(const polygon&) const override { return ask(); }
  bool overlaps(const polygon&) const override { return ask(); }
  int numAsked() const { return numAsked_; }

 private:
  bool ask() const {
    ++numAsked_;
    return true;
  }
  mutable int numAsked_ = 0;
};

TEST(Zone3dBase, WithoutArgumentsHasNoShapeAndTheDefaultHeights) {
  Zone3dBase zone;
  EXPECT_EQ(zone.getZone2d(), nullptr);
  EXPECT_EQ(zone.getZMin(), 0.0);
  EXPECT_EQ(zone.getZMax(), 20.0);
  EXPECT_EQ(zone.getHeight(), 20.0);
  EXPECT_EQ(zone.getName(), "");
  EXPECT_EQ(nameOf(zone.getLogger()), "Zone3dBase");
  EXPECT_EQ(Zone3dBase::DEFAULT_Z_MIN, 0.0F);
  EXPECT_EQ(Zone3dBase::DEFAULT_Z_MAX, 20.0F);
  static_assert(std::is_same_v<decltype(Zone3dBase::DEFAULT_Z_MIN), const float>);
  static_assert(std::is_same_v<decltype(Zone3dBase::DEFAULT_Z_MAX), const float>);
}

TEST(Zone3dBase, StoresItsValuesAsGiven) {
  const auto shape = square();
  Zone3dBase zone(shape, 5.5, -2.0);
  EXPECT_EQ(zone.getZone2d(), shape);
  EXPECT_EQ(zone.getZMin(), 5.5);
  EXPECT_EQ(zone.getZMax(), -2.0);
  EXPECT_EQ(zone.getHeight(), -7.5);
  zone.setZMin(0.25);
  zone.setZMax(0.75);
  EXPECT_EQ(zone.getZMin(), 0.25);
  EXPECT_EQ(zone.getZMax(), 0.75);
  EXPECT_EQ(zone.getHeight(), 0.5);
}

TEST(Zone3dBase, AShapeIsReplacedButNeverRemoved) {
  const auto first = square();
  Zone3dBase zone(first);
  zone.setZone2d(nullptr);
  EXPECT_EQ(zone.getZone2d(), first);
  const auto second = square();
  zone.setZone2d(second);
  EXPECT_EQ(zone.getZone2d(), second);
}

TEST(Zone3dBase, HasTheNameOfItsShape) {
  const auto shape = square();
  Zone3dBase zone(shape);
  EXPECT_EQ(zone.getName(), "square");
  zone.setName("yard");
  EXPECT_EQ(shape->name(), "yard");
  EXPECT_EQ(zone.getName(), "yard");
}

TEST(Zone3dBase, WithoutShapeCannotBeNamed) {
  Zone3dBase zone;
  zone.setName("nobody");
  EXPECT_EQ(zone.getName(), "");
  EXPECT_EQ(zone.getZone2d(), nullptr);
}

TEST(Zone3dBase, CopiesShareTheShapeAndNotTheHeights) {
  Zone3dBase a(square(), 1.0, 2.0);
  Zone3dBase b = a;
  a.setName("x");
  EXPECT_EQ(b.getName(), "x");
  EXPECT_EQ(b.getZone2d(), a.getZone2d());
  a.setZMin(-1);
  EXPECT_EQ(b.getZMin(), 1.0);
  a.setZone2d(square());
  EXPECT_EQ(b.getName(), "x") << "replacing the shape of one leaves the other's";
}

TEST(Zone3dBase, AssignmentSharesTheShapeAndTakesTheLogger) {
  Zone3dBase a(square(), 1.0, 2.0);
  a.setLogger(LoggingManager::getInstance().getLogger("given"));
  Zone3dBase b;
  EXPECT_EQ(&(b = a), &b);
  EXPECT_EQ(b.getZone2d(), a.getZone2d());
  EXPECT_EQ(b.getZMin(), 1.0);
  EXPECT_EQ(b.getZMax(), 2.0);
  EXPECT_EQ(nameOf(b.getLogger()), "given");
  const Zone3dBase c(a);
  EXPECT_EQ(nameOf(c.getLogger()), "given");
  Zone3dBase& same = b;
  b = same;
  EXPECT_EQ(b.getZone2d(), a.getZone2d());
  Zone3dBase empty;
  b = empty;
  EXPECT_EQ(b.getZone2d(), nullptr) << "assignment takes the empty shape too";
}

TEST(Zone3dBasePoint, BothHeightsBelongToTheZone) {
  const Zone3dBase zone(square(), 1.0, 3.0);
  EXPECT_TRUE(zone.within(2, 2, 1.0));
  EXPECT_TRUE(zone.within(2, 2, 3.0));
  EXPECT_TRUE(zone.within(2, 2, 2.0));
  EXPECT_FALSE(zone.within(2, 2, std::nextafter(1.0, 0.0)));
  EXPECT_FALSE(zone.within(2, 2, std::nextafter(3.0, 4.0)));
  EXPECT_FALSE(zone.within(5, 2, 2.0));
  EXPECT_FALSE(zone.within(0, 2, 2.0));
}

TEST(Zone3dBasePoint, CoordinatesAndHeightsAreDoubles) {
  // In single precision 0.1 is a little more and 0.7 a little less.
  const Zone3dBase zone(square(), 0.1, 0.7);
  EXPECT_TRUE(zone.within(2, 2, 0.1));
  EXPECT_FALSE(zone.within(2, 2, std::nextafter(0.1, 0.0)));
  EXPECT_TRUE(zone.within(2, 2, 0.7));
  EXPECT_FALSE(zone.within(2, 2, std::nextafter(0.7, 1.0)));
  const Zone3dBase other(square(), 0.7, 8.1);
  EXPECT_TRUE(other.within(2, 2, 0.7));
  EXPECT_FALSE(other.within(2, 2, std::nextafter(0.7, 0.0)));
  EXPECT_TRUE(other.within(2, 2, 8.1));
  EXPECT_FALSE(other.within(2, 2, std::nextafter(8.1, 9.0)));
  EXPECT_TRUE(zone.within(4 - 1e-9, 2, 0.5));
  EXPECT_TRUE(zone.within(2, 4 - 1e-9, 0.5));
  EXPECT_FALSE(zone.within(4 + 1e-9, 2, 0.5));
  EXPECT_FALSE(zone.within(2, 4 + 1e-9, 0.5));
}

TEST(Zone3dBasePoint, NoNaNHeightPasses) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto shape = std::make_shared<AskedShape>();
  EXPECT_FALSE(Zone3dBase(shape, 1.0, 3.0).within(2, 2, nan));
  EXPECT_FALSE(Zone3dBase(shape, nan, 3.0).within(2, 2, 2));
  EXPECT_FALSE(Zone3dBase(shape, 1.0, nan).within(2, 2, 2));
  EXPECT_EQ(shape->numAsked(), 0);
}

TEST(Zone3dBasePoint, AHeightOutsideDoesNotAskTheShape) {
  const auto shape = std::make_shared<AskedShape>();
  const Zone3dBase zone(shape, 1.0, 3.0);
  EXPECT_FALSE(zone.within(2, 2, 0.5));
  EXPECT_FALSE(zone.within(2, 2, 3.5));
  EXPECT_EQ(shape->numAsked(), 0);
  EXPECT_TRUE(zone.within(2, 2, 2));
  EXPECT_EQ(shape->numAsked(), 1);
}

TEST(Zone3dBasePoint, SwappedBoundsContainNothing) {
  const Zone3dBase zone(square(), 3.0, 1.0);
  for (const double z : {0.0, 1.0, 2.0, 3.0, 4.0}) {
    EXPECT_FALSE(zone.within(2, 2, z)) << z;
  }
  EXPECT_FALSE(zone.within(squareOutline(1, 2), 1.5F, 2.5F));
  EXPECT_FALSE(zone.intersects(squareOutline(1, 2), 1.5F, 2.5F));
}

TEST(Zone3dBaseOutline, SwappedBoundsMeetARangeThatReachesBoth) {
  const Zone3dBase zone(square(), 3.0, 1.0);
  EXPECT_TRUE(zone.intersects(squareOutline(1, 2), 1, 3));
  EXPECT_TRUE(zone.intersects(squareOutline(1, 2), 0, 4));
  EXPECT_FALSE(zone.intersects(squareOutline(1, 2), 0, 2.5F));
  EXPECT_FALSE(zone.intersects(squareOutline(1, 2), 1.5F, 4));
  EXPECT_FALSE(zone.within(squareOutline(1, 2), 0, 4));
  EXPECT_FALSE(zone.overlaps(squareOutline(3, 5), 0, 4));
}

TEST(Zone3dBasePoint, InfiniteBoundsLetEveryHeightThrough) {
  const double infinity = std::numeric_limits<double>::infinity();
  const Zone3dBase zone(square(), -infinity, infinity);
  EXPECT_TRUE(zone.within(2, 2, 1e308));
  EXPECT_TRUE(zone.within(2, 2, -infinity));
  EXPECT_EQ(zone.getHeight(), infinity);
}

TEST(Zone3dBasePoint, AllocatesNothing) {
  for (const std::shared_ptr<Zone>& shape : std::vector<std::shared_ptr<Zone>>{
           square(), std::make_shared<Rectangle>("r", points({{0, 0}, {4, 4}}), 5.0),
           std::make_shared<Sector>("s", -1, 2, 5)}) {
    const Zone3dBase zone(shape, 0, 10);
    const AllocationCounter counter;
    const bool inside = zone.within(2, 2, 5);
    const bool beside = zone.within(20, 2, 5);
    const bool above = zone.within(2, 2, 11);
    EXPECT_EQ(counter.count(), 0U) << shape->type();
    EXPECT_TRUE(inside) << shape->type();
    EXPECT_FALSE(beside) << shape->type();
    EXPECT_FALSE(above) << shape->type();
  }
}

TEST(Zone3dBase, WithoutShapeContainsAndMeetsNothing) {
  const Zone3dBase zone;
  EXPECT_FALSE(zone.within(0, 0, 1));
  EXPECT_FALSE(zone.within(squareOutline(0, 1), 1, 2));
  EXPECT_FALSE(zone.intersects(squareOutline(0, 1), 1, 2));
  EXPECT_FALSE(zone.overlaps(squareOutline(0, 1), 1, 2));
}

TEST(Zone3dBaseOutline, ARangeThatReachesAboveIntersectsOnly) {
  const Zone3dBase zone(square(), 0, 20);
  EXPECT_TRUE(zone.intersects(squareOutline(1, 2), 2, 30));
  EXPECT_FALSE(zone.within(squareOutline(1, 2), 2, 30));
  EXPECT_FALSE(zone.overlaps(squareOutline(3, 5), 2, 30));
  EXPECT_TRUE(zone.overlaps(squareOutline(3, 5), 2, 20));
}

TEST(Zone3dBaseOutline, ARangeAboveMeetsNothing) {
  const Zone3dBase zone(square(), 0, 20);
  EXPECT_FALSE(zone.intersects(squareOutline(1, 2), 25, 30));
  EXPECT_FALSE(zone.within(squareOutline(1, 2), 25, 30));
  EXPECT_FALSE(zone.overlaps(squareOutline(3, 5), 25, 30));
}

TEST(Zone3dBaseOutline, TouchingRangesIntersect) {
  const Zone3dBase zone(square(), 0, 20);
  EXPECT_TRUE(zone.intersects(squareOutline(1, 2), 20, 25));
  EXPECT_TRUE(zone.intersects(squareOutline(1, 2), -5, 0));
  EXPECT_FALSE(zone.within(squareOutline(1, 2), 20, 25));
  EXPECT_TRUE(zone.within(squareOutline(1, 2), 20, 20));
  EXPECT_TRUE(zone.within(squareOutline(1, 2), 0, 20));
}

// Zone 10 to 20 against every pair of heights, by what the words say.
TEST(Zone3dBaseOutline, HeightsDecideBeforeTheShapeIsAsked) {
  const auto shape = std::make_shared<AskedShape>();
  const Zone3dBase zone(shape, 10, 20);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (const float low : {5.0F, 10.0F, 15.0F, 20.0F, 25.0F, nan}) {
    for (const float high : {5.0F, 10.0F, 15.0F, 20.0F, 25.0F, nan}) {
      const auto isBetween = [](float height) { return height >= 10 && height <= 20; };
      const bool liesIn = isBetween(low) && isBetween(high);
      const bool touches = low <= 20 && high >= 10;
      int asked = shape->numAsked();
      EXPECT_EQ(zone.within(squareOutline(0, 1), low, high), liesIn) << low << " " << high;
      asked += liesIn ? 1 : 0;
      EXPECT_EQ(shape->numAsked(), asked);
      EXPECT_EQ(zone.overlaps(squareOutline(0, 1), low, high), liesIn) << low << " " << high;
      asked += liesIn ? 1 : 0;
      EXPECT_EQ(shape->numAsked(), asked);
      EXPECT_EQ(zone.intersects(squareOutline(0, 1), low, high), touches) << low << " " << high;
      asked += touches ? 1 : 0;
      EXPECT_EQ(shape->numAsked(), asked);
    }
  }
}

TEST(Zone3dBaseOutline, FloatHeightsAreComparedAsDoubles) {
  // 0.1F is a little more than 0.1.
  EXPECT_FALSE(Zone3dBase(square(), 0, 0.1).within(squareOutline(1, 2), 0.0F, 0.1F));
  EXPECT_TRUE(Zone3dBase(square(), 0, static_cast<double>(0.1F)).within(squareOutline(1, 2), 0.0F, 0.1F));
  EXPECT_TRUE(Zone3dBase(square(), 0.1, 1).within(squareOutline(1, 2), 0.1F, 0.5F));
  EXPECT_FALSE(Zone3dBase(square(), 0, 0.1).intersects(squareOutline(1, 2), 0.1F, 1.0F));
  EXPECT_TRUE(Zone3dBase(square(), 0, 0.1).intersects(squareOutline(1, 2), 0.0F, 0.1F));
  EXPECT_TRUE(Zone3dBase(square(), 0.1, 1).intersects(squareOutline(1, 2), 0.0F, 0.1F));
  // 0.7F is a little less than 0.7.
  EXPECT_FALSE(Zone3dBase(square(), 0.7, 1).intersects(squareOutline(1, 2), 0.0F, 0.7F));
  EXPECT_FALSE(Zone3dBase(square(), 0.7, 1).overlaps(squareOutline(-1, 2), 0.7F, 0.9F));
  EXPECT_TRUE(Zone3dBase(square(), 0, 0.7).overlaps(squareOutline(-1, 2), 0.0F, 0.7F));
}

TEST(Zone3dBaseOutline, EachQuestionGoesToItsOwn) {
  const Zone3dBase zone(square(), 0, 20);
  EXPECT_TRUE(zone.within(squareOutline(0, 4), 1, 2));
  EXPECT_TRUE(zone.intersects(squareOutline(4, 5), 1, 2));
  EXPECT_FALSE(zone.overlaps(squareOutline(4, 5), 1, 2));
  EXPECT_TRUE(zone.overlaps(squareOutline(3, 5), 1, 2));
  EXPECT_FALSE(zone.overlaps(squareOutline(1, 2), 1, 2));
  EXPECT_FALSE(zone.within(squareOutline(3, 5), 1, 2));
}

TEST(Zone3dBaseLoad, ReadsNameShapeGeometryAndHeightsInThisOrder) {
  SettingsManager settings;
  loadText(settings, R"({"name": "yard", "shape": "Sector", "zMax": 3,
                         "Sector": {"minAngle": -0.5, "maxAngle": 1.5, "radius": 10}})");
  Zone3dBase zone;
  const LogCapture log;
  zone.load(settings);
  EXPECT_EQ(log.texts(LogLevel::Trace),
            (std::vector<std::string>{"got .name, value: yard", "got .shape, value: Sector",
                                      "got Sector.maxAngle, value: 1.5", "got Sector.minAngle, value: -0.5",
                                      "got Sector.radius, value: 10", "got .zMin, default: 0, value  : 0",
                                      "got .zMax, default: 20, value  : 3"}));
  EXPECT_EQ(log.records().size(), 7U);
  EXPECT_EQ(currentPath(settings), "");
}

TEST(Zone3dBaseLoad, MakesEachShapeInAnyLetterCase) {
  const std::vector<std::pair<std::string, std::string>> shapes = {
      {"polygon", "polygon"},     {"Polygon", "polygon"},     {"POLYGON", "polygon"},
      {"rectangle", "rectangle"}, {"Rectangle", "rectangle"}, {"RECTangle", "rectangle"},
      {"sector", "sector"},       {"SeCtOr", "sector"}};
  for (const auto& [text, type] : shapes) {
    SettingsManager settings;
    loadText(settings, R"({"name": "yard", "shape": ")" + text + R"(",
        "Polygon": {"Point": [{"x": 0, "y": 0}, {"x": 0, "y": 4}, {"x": 4, "y": 0}]},
        "Rectangle": {"rotation": 0, "Point": [{"x": 0, "y": 0}, {"x": 2, "y": 1}]},
        "Sector": {"minAngle": 0, "maxAngle": 1, "radius": 10}})");
    Zone3dBase zone;
    zone.load(settings);
    ASSERT_NE(zone.getZone2d(), nullptr) << text;
    EXPECT_EQ(zone.getZone2d()->type(), type) << text;
    EXPECT_EQ(zone.getName(), "yard") << text;
    EXPECT_NE(zone.getZone2d()->area(), 0.0) << text;
  }
}

TEST(Zone3dBaseLoad, TheShapeHasTheDefaultLoggerAndTheZoneItsOwn) {
  for (const char* shape : {"polygon", "rectangle", "sector"}) {
    SettingsManager settings;
    loadText(settings, R"({"name": "n", "shape": ")" + std::string(shape) + R"(",
        "Polygon": {}, "Rectangle": {"rotation": 0, "Point": [{"x": 0, "y": 0}, {"x": 1, "y": 1}]},
        "Sector": {"minAngle": 0, "maxAngle": 1, "radius": 1}})");
    Zone3dBase zone;
    zone.setLogger(LoggingManager::getInstance().getLogger("given"));
    zone.load(settings);
    EXPECT_EQ(nameOf(zone.getZone2d()->getLogger()), "") << shape;
    EXPECT_EQ(nameOf(zone.getLogger()), "given") << shape;
  }
}

TEST(Zone3dBaseLoad, MissingOrNonNumericHeightsBecomeTheDefaults) {
  for (const char* heights : {"", R"("zMin": "low", "zMax": "high",)", R"("zMin": {}, "zMax": [],)"}) {
    SettingsManager settings;
    loadText(settings, "{" + std::string(heights) + R"("name": "n", "shape": "polygon", "Polygon": {}})");
    Zone3dBase zone(nullptr, 7, 8);
    zone.load(settings);
    EXPECT_EQ(zone.getZMin(), 0.0) << heights;
    EXPECT_EQ(zone.getZMax(), 20.0) << heights;
  }
}

TEST(Zone3dBaseLoad, AnUnknownShapeIsLoggedAndTheHeightsAreStillRead) {
  SettingsManager settings;
  loadText(settings, R"({"name": "yard", "shape": "Circle", "zMin": 1.5})");
  Zone3dBase zone;
  const LogCapture log(LogLevel::Warning);
  zone.load(settings);
  EXPECT_EQ(log.records(), (std::vector<Record>{{LogLevel::Warning, "Zone3dBase",
                                                 "Cannot load zone with invalid shape 'circle'"}}));
  EXPECT_EQ(zone.getZone2d(), nullptr);
  EXPECT_EQ(zone.getName(), "");
  EXPECT_EQ(zone.getZMin(), 1.5);
  EXPECT_EQ(zone.getZMax(), 20.0);
  SettingsManager saved;
  zone.save(saved);
  EXPECT_TRUE(saved.getTree().empty());
}

TEST(Zone3dBaseLoad, AnUnknownShapeKeepsTheOneBefore) {
  SettingsManager settings;
  loadText(settings, R"({"name": "yard", "shape": "", "zMin": 1.5})");
  const auto shape = square();
  Zone3dBase zone(shape);
  const LogCapture log(LogLevel::Warning);
  zone.load(settings);
  EXPECT_EQ(zone.getZone2d(), shape);
  EXPECT_EQ(zone.getName(), "square");
  EXPECT_EQ(log.texts(LogLevel::Warning),
            (std::vector<std::string>{"Cannot load zone with invalid shape ''"}));
}

TEST(Zone3dBaseLoad, AFailureLeavesShapeAndHeightsAsTheyWere) {
  for (const char* document :
       {R"({"shape": "polygon", "zMin": 1, "zMax": 2})", R"({"name": "yard", "zMin": 1, "zMax": 2})",
        R"({"name": "yard", "shape": "polygon", "zMin": 1, "zMax": 2, "Polygon": {"Point": [{"x": 1}]}})",
        R"({"name": "yard", "shape": "sector", "zMin": 1, "zMax": 2})",
        R"({"name": "yard", "shape": "rectangle", "zMin": 1, "zMax": 2})"}) {
    SettingsManager settings;
    loadText(settings, document);
    const auto shape = square();
    Zone3dBase zone(shape, 7, 8);
    EXPECT_THROW(zone.load(settings), boost::property_tree::ptree_bad_path) << document;
    EXPECT_EQ(zone.getZone2d(), shape) << document;
    EXPECT_EQ(zone.getName(), "square") << document;
    EXPECT_EQ(zone.getZMin(), 7.0) << document;
    EXPECT_EQ(zone.getZMax(), 8.0) << document;
  }
}

TEST(Zone3dBaseLoad, ANewShapeReplacesTheSharedOneOnlyHere) {
  SettingsManager settings;
  loadText(settings, squareEntry);
  Zone3dBase a(square());
  const Zone3dBase b = a;
  a.load(settings);
  EXPECT_EQ(a.getName(), "yard");
  EXPECT_EQ(b.getName(), "square");
}

TEST(Zone3dBaseLoad, ARectangleWithAWrongNumberOfPointsLeavesThePathInsideAndReadsTheHeightsThere) {
  SettingsManager settings;
  loadText(settings, R"({"name": "r", "shape": "rectangle", "zMin": 5, "zMax": 6,
                         "Rectangle": {"rotation": 0, "Point": [{"x": 1, "y": 2}]}})");
  Zone3dBase zone(nullptr, 7, 8);
  const LogCapture log(LogLevel::Error);
  zone.load(settings);
  EXPECT_EQ(log.texts(LogLevel::Error),
            (std::vector<std::string>{"Rectangle defined from file must have two points but has 1"}));
  EXPECT_EQ(currentPath(settings), "Rectangle");
  EXPECT_EQ(zone.getZMin(), 0.0);
  EXPECT_EQ(zone.getZMax(), 20.0);
}

TEST(Zone3dBaseSave, WritesNameShapeAndHeightsInThisOrder) {
  Zone3dBase zone(std::make_shared<Sector>("yard", -0.5, 1.5, 10.0), 1.5, 3.0);
  SettingsManager settings;
  const LogCapture log(LogLevel::Debug);
  zone.save(settings);
  EXPECT_EQ(log.texts(LogLevel::Debug),
            (std::vector<std::string>{"set .name to: yard", "set .shape to: sector",
                                      "set Sector.minAngle to: -0.5", "set Sector.maxAngle to: 1.5",
                                      "set Sector.radius to: 10", "set .zMin to: 1.5", "set .zMax to: 3"}));
}

TEST(Zone3dBaseSave, WithoutShapeWritesAndLogsNothing) {
  SettingsManager settings;
  const LogCapture log;
  Zone3dBase(nullptr, 1, 2).save(settings);
  EXPECT_TRUE(settings.getTree().empty());
  EXPECT_TRUE(log.records().empty());
}

TEST(Zone3dBaseRoundTrip, ABoundThatIsNotFiniteIsReadBackAsItsDefault) {
  for (const double odd : {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                           std::numeric_limits<double>::quiet_NaN()}) {
    Zone3dBase zone(square(), odd, odd);
    SettingsManager settings;
    zone.save(settings);
    SettingsManager reread;
    loadText(reread, saveText(settings));
    Zone3dBase loaded(nullptr, 7, 8);
    loaded.load(reread);
    EXPECT_EQ(loaded.getZMin(), 0.0) << odd;
    EXPECT_EQ(loaded.getZMax(), 20.0) << odd;
    EXPECT_EQ(loaded.getName(), "square") << odd;
  }
}

TEST(Zone3dBaseRoundTrip, RestoresEveryShapeAndBothHeightsBitForBit) {
  std::mt19937_64 engine(47);
  std::uniform_real_distribution<double> number(-100, 100);
  for (int i = 0; i < 100; ++i) {
    for (const std::shared_ptr<Zone>& shape : std::vector<std::shared_ptr<Zone>>{
             std::make_shared<Polygon>("p", points({{number(engine), 1}, {2, number(engine)}, {3, 3}})),
             std::make_shared<Rectangle>("r", points({{number(engine), 1}, {2, number(engine)}}),
                                         number(engine)),
             std::make_shared<Sector>("s", number(engine), number(engine), number(engine))}) {
      Zone3dBase zone(shape, number(engine), number(engine));
      SettingsManager settings;
      zone.save(settings);
      const std::string text = saveText(settings);
      SettingsManager reread;
      loadText(reread, text);
      Zone3dBase loaded;
      loaded.load(reread);
      ASSERT_EQ(loaded.getZMin(), zone.getZMin()) << text;
      ASSERT_EQ(loaded.getZMax(), zone.getZMax()) << text;
      ASSERT_EQ(loaded.getName(), zone.getName()) << text;
      ASSERT_EQ(loaded.getZone2d()->area(), shape->area()) << text;
      SettingsManager again;
      loaded.save(again);
      ASSERT_EQ(saveText(again), text);
    }
  }
}

}  // namespace
}  // namespace orvantis::filter::detection
