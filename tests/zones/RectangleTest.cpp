#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <boost/property_tree/exceptions.hpp>
#include <gtest/gtest.h>

#include <filter/detection/Rectangle.h>
#include <logging/LoggingManager.h>
#include <settings/SettingsManager.h>

#include "support/LogCapture.h"
#include "support/Settings.h"
#include "zones/CurrentPath.h"
#include "zones/Shapes.h"

namespace orvantis::filter::detection {
namespace {

using testing::Coordinates;
using testing::coordinates;
using testing::currentPath;
using testing::loadText;
using testing::LogCapture;
using testing::points;
using testing::Record;
using testing::saveText;
using testing::squareOutline;
using testing::verticesOf;

struct Definition {
  Coordinates corners;
  double rotation = -1.0;

  friend bool operator==(const Definition&, const Definition&) = default;
};

Definition definitionOf(const Rectangle& rectangle) {
  std::vector<Point> corners;
  Definition definition;
  rectangle.getRectangle(corners, definition.rotation);
  definition.corners = coordinates(corners);
  return definition;
}

// A derived class may bring a hole.
class HoledRectangle : public Rectangle {
 public:
  using Rectangle::Rectangle;
  void addHole(const core::PlanarPolygon& hole) { polygon_.inners().push_back(hole.outer()); }
};

void expectNear(const Coordinates& actual, const Coordinates& expected, double tolerance) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    EXPECT_NEAR(actual[i].first, expected[i].first, tolerance) << i;
    EXPECT_NEAR(actual[i].second, expected[i].second, tolerance) << i;
  }
}

TEST(Rectangle, UnturnedHasItsCornersInTheFixedOrder) {
  const Rectangle rectangle("r", points({{0, 0}, {2, 1}}), 0.0);
  EXPECT_EQ(verticesOf(rectangle), (Coordinates{{0, 0}, {0, 1}, {2, 1}, {2, 0}}));
  EXPECT_EQ(rectangle.area(), 2.0);
}

TEST(Rectangle, AQuarterTurnMovesEachCornerToTheNext) {
  const Rectangle rectangle("r", points({{0, 0}, {2, 2}}), 90.0);
  expectNear(verticesOf(rectangle), {{2, 0}, {0, 0}, {0, 2}, {2, 2}}, 1e-15);
}

TEST(Rectangle, TurnsCounterclockwiseInDegrees) {
  const Rectangle rectangle("r", points({{-2, -1}, {2, 1}}), 30.0);
  const double cosine = std::sqrt(3.0) / 2;
  expectNear(verticesOf(rectangle),
             {{-2 * cosine + 0.5, -1 - cosine},
              {-2 * cosine - 0.5, -1 + cosine},
              {2 * cosine - 0.5, 1 + cosine},
              {2 * cosine + 0.5, 1 - cosine}},
             1e-14);
  EXPECT_TRUE(rectangle.within(Point(1.7, 1.0)));
  EXPECT_FALSE(rectangle.within(Point(1.7, -1.0)));
}

TEST(Rectangle, WithBothAxesSwappedRunsClockwise) {
  const Rectangle rectangle("r", points({{2, 1}, {0, 0}}), 0.0);
  EXPECT_EQ(verticesOf(rectangle), (Coordinates{{2, 1}, {2, 0}, {0, 0}, {0, 1}}));
  EXPECT_EQ(rectangle.area(), 2.0);
}

TEST(Rectangle, WithOneAxisSwappedRunsCounterclockwise) {
  EXPECT_EQ(Rectangle("r", points({{2, 0}, {0, 1}}), 0.0).area(), -2.0);
  EXPECT_EQ(Rectangle("r", points({{0, 1}, {2, 0}}), 0.0).area(), -2.0);
}

TEST(Rectangle, ContainsTheSamePointsHoweverItsCornersAreGiven) {
  for (const Coordinates& corners : {Coordinates{{0, 0}, {2, 1}}, Coordinates{{2, 1}, {0, 0}},
                                     Coordinates{{2, 0}, {0, 1}}, Coordinates{{0, 1}, {2, 0}}}) {
    const Rectangle rectangle("r", points(corners), 0.0);
    EXPECT_TRUE(rectangle.within(Point(1, 0.5)));
    EXPECT_FALSE(rectangle.within(Point(1, 1)));
    EXPECT_FALSE(rectangle.within(Point(3, 0.5)));
    EXPECT_TRUE(rectangle.within(squareOutline(0.25, 0.75)));
    EXPECT_TRUE(rectangle.overlaps(squareOutline(0.5, 1.5)));
    EXPECT_TRUE(rectangle.intersects(squareOutline(1, 3)));
    EXPECT_FALSE(rectangle.overlaps(squareOutline(1, 3)));
  }
}

TEST(Rectangle, GetRectangleAppendsTheDefiningCorners) {
  const Rectangle rectangle("r", points({{0, 0}, {2, 1}}), 33.0);
  std::vector<Point> corners = points({{9, 9}});
  double rotation = 0.0;
  rectangle.getRectangle(corners, rotation);
  EXPECT_EQ(coordinates(corners), (Coordinates{{9, 9}, {0, 0}, {2, 1}}));
  EXPECT_EQ(rotation, 33.0);
}

TEST(Rectangle, OfAnyOtherNumberOfCornersLogsTheNumberAndStaysEmpty) {
  for (const std::size_t numCorners : {0U, 1U, 3U, 1000U}) {
    const LogCapture log;
    const Rectangle rectangle("r", points(Coordinates(numCorners, {1, 2})), 45.0);
    EXPECT_EQ(
        log.records(),
        (std::vector<Record>{{LogLevel::Error, "",
                              "Invalid rectangle inputs of corners size " + std::to_string(numCorners)}}));
    EXPECT_TRUE(verticesOf(rectangle).empty());
    EXPECT_FALSE(rectangle.within(Point(1, 2)));
    EXPECT_FALSE(rectangle.intersects(squareOutline(-9, 9)));
    EXPECT_EQ(rectangle.area(), 0.0);
    EXPECT_EQ(rectangle.name(), "r");
  }
}

TEST(Rectangle, OfTwoCornersLogsNothing) {
  const LogCapture log;
  const Rectangle rectangle("r", points({{0, 0}, {2, 1}}), 0.0);
  EXPECT_TRUE(log.records().empty());
}

TEST(Rectangle, AMadeCopyHasTheSameDefinitionAndCorners) {
  Rectangle rectangle("r", points({{0.1, 0.7}, {-2.3, 1.9}}), 17.3);
  rectangle.setName("renamed");
  const auto copy = std::dynamic_pointer_cast<Rectangle>(rectangle.makeCopy());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->name(), "renamed");
  EXPECT_EQ(definitionOf(*copy), definitionOf(rectangle));
  EXPECT_EQ(verticesOf(*copy), verticesOf(rectangle));
}

TEST(Rectangle, CopiesKeepTheDefinition) {
  const Rectangle rectangle("r", points({{0.1, 0.7}, {-2.3, 1.9}}), 17.3);
  const Rectangle copy(rectangle);
  EXPECT_EQ(definitionOf(copy), definitionOf(rectangle));
  EXPECT_EQ(verticesOf(copy), verticesOf(rectangle));
  Rectangle assigned("other", points({{0, 0}, {1, 1}}), 0.0);
  assigned = rectangle;
  EXPECT_EQ(definitionOf(assigned), definitionOf(rectangle));
  Rectangle moved("other", points({{0, 0}, {1, 1}}), 0.0);
  moved = Rectangle(copy);
  EXPECT_EQ(definitionOf(moved), definitionOf(rectangle));
  EXPECT_EQ(verticesOf(moved), verticesOf(rectangle));
  const Rectangle moveMade(std::move(moved));
  EXPECT_EQ(definitionOf(moveMade), definitionOf(rectangle));
  EXPECT_EQ(verticesOf(moveMade), verticesOf(rectangle));
}

TEST(RectangleSave, WritesShapeRotationAndTheTwoCorners) {
  const Rectangle rectangle("r", points({{1, 2}, {3, 4.5}}), 30.0);
  SettingsManager settings;
  const LogCapture log(LogLevel::Debug);
  rectangle.save(settings);
  EXPECT_EQ(log.texts(LogLevel::Debug),
            (std::vector<std::string>{"set .shape to: rectangle", "set Rectangle.rotation to: 30",
                                      "set Rectangle.Point.x to: 1", "set Rectangle.Point.y to: 2",
                                      "set Rectangle.Point.x to: 3", "set Rectangle.Point.y to: 4.5"}));
  EXPECT_EQ(currentPath(settings), "");
}

TEST(RectangleSave, GivesTheDocumentedEntry) {
  SettingsManager settings;
  Rectangle("r", points({{1, 2}, {3, 4.5}}), 30.0).save(settings);
  SettingsManager expected;
  loadText(
      expected,
      R"({"shape": "rectangle", "Rectangle": {"rotation": 30, "Point": [{"x": 1, "y": 2}, {"x": 3, "y": 4.5}]}})");
  EXPECT_EQ(saveText(settings), saveText(expected));
}

TEST(RectangleLoad, ReadsRotationThenEachCornerYBeforeX) {
  SettingsManager settings;
  loadText(settings, R"({"Rectangle": {"Point": [{"x": 1, "y": 2}, {"x": 3, "y": 4.5}], "rotation": 30}})");
  const LogCapture log;
  const Rectangle rectangle("r", settings);
  EXPECT_EQ(log.texts(LogLevel::Trace),
            (std::vector<std::string>{"got Rectangle.rotation, value: 30", "got Rectangle.Point.y, value: 2",
                                      "got Rectangle.Point.x, value: 1", "got Rectangle.Point.y, value: 4.5",
                                      "got Rectangle.Point.x, value: 3"}));
  EXPECT_EQ(definitionOf(rectangle), (Definition{{{1, 2}, {3, 4.5}}, 30.0}));
  EXPECT_EQ(verticesOf(rectangle), verticesOf(Rectangle("same", points({{1, 2}, {3, 4.5}}), 30.0)));
  EXPECT_EQ(currentPath(settings), "");
}

TEST(RectangleLoad, ReplacesAllOfThePolygon) {
  SettingsManager settings;
  loadText(settings, R"({"Rectangle": {"rotation": 0, "Point": [{"x": 7, "y": 7}, {"x": 8, "y": 9}]}})");
  Rectangle rectangle("r", points({{0, 0}, {2, 1}}), 10.0);
  rectangle.load(settings);
  EXPECT_EQ(verticesOf(rectangle), (Coordinates{{7, 7}, {7, 9}, {8, 9}, {8, 7}}));
}

TEST(RectangleLoad, TakesHolesAway) {
  SettingsManager settings;
  loadText(settings, R"({"Rectangle": {"rotation": 0, "Point": [{"x": 0, "y": 0}, {"x": 9, "y": 9}]}})");
  HoledRectangle rectangle("r", points({{0, 0}, {9, 9}}), 0.0);
  rectangle.addHole(squareOutline(2, 4));
  EXPECT_FALSE(rectangle.within(Point(3, 3)));
  rectangle.load(settings);
  EXPECT_TRUE(rectangle.within(Point(3, 3)));
  EXPECT_EQ(rectangle.area(), 81.0);
}

TEST(RectangleLoad, OfAnyOtherNumberOfPointsLogsItAndLeavesThePathInside) {
  const std::vector<std::pair<int, std::string>> lists = {
      {0, "[]"},
      {1, R"([{"x": 1, "y": 2}])"},
      {3, R"([{"x": 1, "y": 2}, {"x": 3, "y": 4}, {"x": 5, "y": 6}])"}};
  for (const auto& [count, list] : lists) {
    SettingsManager settings;
    loadText(settings, R"({"Rectangle": {"rotation": 45, "Point": )" + list + "}}");
    Rectangle rectangle("r", points({{0, 0}, {2, 1}}), 10.0);
    const LogCapture log(LogLevel::Debug);
    rectangle.load(settings);
    EXPECT_EQ(log.records(),
              (std::vector<Record>{
                  {LogLevel::Error, "",
                   "Rectangle defined from file must have two points but has " + std::to_string(count)}}));
    EXPECT_TRUE(verticesOf(rectangle).empty());
    EXPECT_EQ(rectangle.area(), 0.0);
    EXPECT_EQ(definitionOf(rectangle), (Definition{{{0, 0}, {2, 1}}, 45.0}));
    EXPECT_EQ(currentPath(settings), "Rectangle");
  }
}

TEST(RectangleLoad, AWrongNumberOfPointsIsLoggedByTheZonesOwnLogger) {
  SettingsManager settings;
  loadText(settings, R"({"Rectangle": {"rotation": 45}})");
  Rectangle rectangle("r", points({{0, 0}, {2, 1}}), 10.0);
  rectangle.setLogger(LoggingManager::getInstance().getLogger("yard"));
  const LogCapture log(LogLevel::Error);
  rectangle.load(settings);
  ASSERT_EQ(log.records().size(), 1U);
  EXPECT_EQ(log.records().front().logger, "yard");
}

TEST(RectangleLoad, AWrongNumberOfPointsGivesAnEmptyRectangleFromTheConstructor) {
  SettingsManager settings;
  loadText(settings, R"({"Rectangle": {"rotation": 45, "Point": {"x": 1, "y": 2}}})");
  const LogCapture log(LogLevel::Error);
  const Rectangle rectangle("r", settings);
  EXPECT_EQ(log.texts(LogLevel::Error),
            (std::vector<std::string>{"Rectangle defined from file must have two points but has 1"}));
  EXPECT_TRUE(verticesOf(rectangle).empty());
  EXPECT_EQ(currentPath(settings), "Rectangle");
}

TEST(RectangleLoad, AMissingRotationEmptiesTheRingAndKeepsTheDefinition) {
  for (const char* document :
       {R"({"Rectangle": {"Point": [{"x": 1, "y": 2}, {"x": 3, "y": 4}]}})",
        R"({"Rectangle": {"rotation": "steep", "Point": [{"x": 1, "y": 2}, {"x": 3, "y": 4}]}})"}) {
    SettingsManager settings;
    loadText(settings, document);
    Rectangle rectangle("r", points({{0, 0}, {2, 1}}), 10.0);
    EXPECT_THROW(rectangle.load(settings), boost::property_tree::ptree_error);
    EXPECT_TRUE(verticesOf(rectangle).empty());
    EXPECT_EQ(definitionOf(rectangle), (Definition{{{0, 0}, {2, 1}}, 10.0}));
    EXPECT_EQ(currentPath(settings), "Rectangle");
  }
}

TEST(RectangleLoad, AFailedCornerKeepsWhatWasReadBeforeIt) {
  SettingsManager settings;
  loadText(settings, R"({"Rectangle": {"rotation": 45, "Point": [{"x": 5, "y": 6}, {"y": 7}]}})");
  Rectangle rectangle("r", points({{0, 0}, {2, 1}}), 10.0);
  EXPECT_THROW(rectangle.load(settings), boost::property_tree::ptree_bad_path);
  EXPECT_TRUE(verticesOf(rectangle).empty());
  EXPECT_EQ(definitionOf(rectangle), (Definition{{{5, 6}, {2, 1}}, 45.0}));
  EXPECT_EQ(currentPath(settings), "Rectangle.Point");

  SettingsManager first;
  loadText(first, R"({"Rectangle": {"rotation": 45, "Point": [{"x": 5}, {"x": 6, "y": 7}]}})");
  Rectangle other("r", points({{0, 0}, {2, 1}}), 10.0);
  EXPECT_THROW(other.load(first), boost::property_tree::ptree_bad_path);
  EXPECT_EQ(definitionOf(other), (Definition{{{0, 0}, {2, 1}}, 45.0}));
  EXPECT_EQ(currentPath(first), "Rectangle.Point");
}

TEST(RectangleRoundTrip, RestoresCornersRotationAndPolygonBitForBit) {
  std::mt19937_64 engine(42);
  std::uniform_real_distribution<double> coordinate(-1e4, 1e4);
  std::uniform_real_distribution<double> degrees(-720, 720);
  for (int i = 0; i < 500; ++i) {
    const Coordinates corners = {{coordinate(engine), coordinate(engine)},
                                 {coordinate(engine), coordinate(engine)}};
    const Rectangle rectangle("r", points(corners), degrees(engine));
    SettingsManager settings;
    rectangle.save(settings);
    SettingsManager reread;
    loadText(reread, saveText(settings));
    const Rectangle loaded("loaded", reread);
    ASSERT_EQ(definitionOf(loaded), definitionOf(rectangle)) << i;
    ASSERT_EQ(verticesOf(loaded), verticesOf(rectangle)) << i;
  }
}

// A point lies in the turned rectangle when, turned back about the centre, it lies between the corners.
TEST(RectangleRandom, ContainsWhatTheUnturnedOneContainsTurnedBack) {
  std::mt19937_64 engine(43);
  std::uniform_real_distribution<double> coordinate(-10, 10);
  std::uniform_real_distribution<double> degrees(-400, 400);
  int numInside = 0;
  for (int i = 0; i < 20000; ++i) {
    const double x1 = coordinate(engine);
    const double y1 = coordinate(engine);
    const double x2 = coordinate(engine);
    const double y2 = coordinate(engine);
    const double rotation = degrees(engine);
    const double x = coordinate(engine);
    const double y = coordinate(engine);
    const long double centreX = (static_cast<long double>(x1) + x2) / 2;
    const long double centreY = (static_cast<long double>(y1) + y2) / 2;
    const long double angle = rotation * std::numbers::pi_v<long double> / 180;
    const long double along = (x - centreX) * std::cos(angle) + (y - centreY) * std::sin(angle);
    const long double across = -(x - centreX) * std::sin(angle) + (y - centreY) * std::cos(angle);
    const long double roomAlong = std::abs(static_cast<long double>(x2) - x1) / 2 - std::abs(along);
    const long double roomAcross = std::abs(static_cast<long double>(y2) - y1) / 2 - std::abs(across);
    const long double room = std::min(roomAlong, roomAcross);
    if (std::abs(room) < 1e-9L) {
      continue;
    }
    const Rectangle rectangle("r", points({{x1, y1}, {x2, y2}}), rotation);
    ASSERT_EQ(rectangle.within(Point(x, y)), room > 0)
        << x << " " << y << " in " << x1 << " " << y1 << ", " << x2 << " " << y2 << " turned by " << rotation;
    ASSERT_NEAR(rectangle.area(), (x2 - x1) * (y2 - y1), 1e-10) << i;
    numInside += room > 0 ? 1 : 0;
  }
  EXPECT_GT(numInside, 1000);
}

// Angles whose sine or cosine C libraries round in different ways: a flat rectangle shows both as
// coordinates.
TEST(Rectangle, CornersAreTheSameOnEveryMachine) {
  const auto ring = [](const Rectangle& rectangle) {
    std::vector<Point> vertices;
    rectangle.getPolygon(vertices);
    return coordinates(vertices);
  };
  const Rectangle first("r", points({{-1, 0}, {1, 0}}), 6.766);
  EXPECT_EQ(ring(first), (Coordinates{{-0x1.fc6f295dbe385p-1, -0x1.e291ad601bf7fp-4},
                                      {-0x1.fc6f295dbe385p-1, -0x1.e291ad601bf7fp-4},
                                      {0x1.fc6f295dbe385p-1, 0x1.e291ad601bf7fp-4},
                                      {0x1.fc6f295dbe385p-1, 0x1.e291ad601bf7fp-4}}));
  const Rectangle second("r", points({{-1, 0}, {1, 0}}), 16.352);
  EXPECT_EQ(ring(second), (Coordinates{{-0x1.eb4a28fc9d563p-1, -0x1.204b6a344affbp-2},
                                       {-0x1.eb4a28fc9d563p-1, -0x1.204b6a344affbp-2},
                                       {0x1.eb4a28fc9d563p-1, 0x1.204b6a344affbp-2},
                                       {0x1.eb4a28fc9d563p-1, 0x1.204b6a344affbp-2}}));
}

}  // namespace
}  // namespace orvantis::filter::detection
