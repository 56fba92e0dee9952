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

#include <filter/detection/Polygon.h>
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
using testing::outline;
using testing::points;
using testing::saveText;
using testing::squareOutline;
using testing::verticesOf;

const Coordinates clockwiseSquare = {{0, 0}, {0, 1}, {1, 1}, {1, 0}};
const Coordinates counterclockwiseSquare = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};

// A derived class may bring holes; the class itself never does.
class HoledPolygon : public Polygon {
 public:
  HoledPolygon(const std::vector<Point>& vertices, const std::vector<Coordinates>& holes)
      : Polygon("holed", vertices) {
    for (const Coordinates& hole : holes) {
      polygon_.inners().push_back(outline(hole).outer());
    }
  }
};

TEST(Polygon, StatesItsLimitsAndDoesNotEnforceThem) {
  EXPECT_EQ(Polygon::MIN_NUM_POLYGON_SIDES, 3);
  EXPECT_EQ(Polygon::MAX_NUM_POLYGON_SIDES, 16);
  const int* const addressable[] = {&Polygon::MIN_NUM_POLYGON_SIDES, &Polygon::MAX_NUM_POLYGON_SIDES};
  EXPECT_EQ(*addressable[0] + *addressable[1], 19);
  EXPECT_EQ(verticesOf(Polygon("p", points(Coordinates(20, {1, 2})))).size(), 20U);
}

TEST(Polygon, MadeFromANameIsEmpty) {
  const Polygon polygon("empty");
  EXPECT_EQ(polygon.name(), "empty");
  EXPECT_TRUE(verticesOf(polygon).empty());
  EXPECT_EQ(polygon.area(), 0.0);
}

TEST(Polygon, OfFewerThanThreeVerticesContainsMeetsAndOverlapsNothing) {
  for (const Coordinates& vertices : {Coordinates{}, Coordinates{{0, 0}}, Coordinates{{0, 0}, {2, 2}},
                                      Coordinates{{0, 0}, {2, 2}, {0, 0}}}) {
    const Polygon polygon("few", points(vertices));
    for (const Point& point : points({{0, 0}, {1, 1}, {2, 2}, {0.5, 0.5}, {5, 5}})) {
      EXPECT_FALSE(polygon.within(point)) << vertices.size();
    }
    EXPECT_FALSE(polygon.within(outline(vertices))) << vertices.size();
    EXPECT_FALSE(polygon.intersects(squareOutline(-1, 3))) << vertices.size();
    EXPECT_FALSE(polygon.overlaps(squareOutline(1, 3))) << vertices.size();
    EXPECT_FALSE(polygon.within(squareOutline(0, 1))) << vertices.size();
    EXPECT_EQ(polygon.area(), 0.0) << vertices.size();
  }
}

TEST(Polygon, AnArgumentOfFewerThanThreeVerticesIsWithinMeetsAndOverlapsNothing) {
  const Polygon polygon("square", points({{0, 0}, {0, 4}, {4, 4}, {4, 0}}));
  for (const Coordinates& vertices : {Coordinates{}, Coordinates{{1, 1}}, Coordinates{{1, 1}, {9, 9}},
                                      Coordinates{{1, 1}, {2, 2}, {1, 1}}}) {
    EXPECT_FALSE(polygon.within(outline(vertices))) << vertices.size();
    EXPECT_FALSE(polygon.intersects(outline(vertices))) << vertices.size();
    EXPECT_FALSE(polygon.overlaps(outline(vertices))) << vertices.size();
  }
}

TEST(Polygon, ContainsNoPointOfItsBorder) {
  const Polygon square("square", points(clockwiseSquare));
  EXPECT_TRUE(square.within(Point(0.5, 0.5)));
  EXPECT_FALSE(square.within(Point(0.5, 0)));
  EXPECT_FALSE(square.within(Point(0.5, 1)));
  EXPECT_FALSE(square.within(Point(0, 0.5)));
  EXPECT_FALSE(square.within(Point(1, 0.5)));
  EXPECT_FALSE(square.within(Point(0, 0)));
  EXPECT_FALSE(square.within(Point(1, 1)));
  EXPECT_FALSE(square.within(Point(2, 0.5)));
  EXPECT_FALSE(square.within(Point(0.5, -1)));
}

TEST(Polygon, AnUnclosedTriangleIsClosedByItsLastEdge) {
  const Polygon triangle("triangle", points({{0, 0}, {0, 1}, {1, 0}}));
  EXPECT_EQ(triangle.area(), 0.5);
  EXPECT_TRUE(triangle.within(Point(0.2, 0.2)));
  EXPECT_FALSE(triangle.within(Point(0.5, 0)));
  EXPECT_FALSE(triangle.within(Point(0.5, -0.1)));
}

TEST(Polygon, AreaIsPositiveClockwiseAndNegativeCounterclockwise) {
  Coordinates closedSquare = clockwiseSquare;
  closedSquare.emplace_back(0, 0);
  Coordinates closedReversed = counterclockwiseSquare;
  closedReversed.emplace_back(0, 0);
  EXPECT_EQ(Polygon("p", points(clockwiseSquare)).area(), 1.0);
  EXPECT_EQ(Polygon("p", points(closedSquare)).area(), 1.0);
  EXPECT_EQ(Polygon("p", points(counterclockwiseSquare)).area(), -1.0);
  EXPECT_EQ(Polygon("p", points(closedReversed)).area(), -1.0);
}

TEST(Polygon, AreaAddsTheSignedAreasOfHoles) {
  const Coordinates outer = {{0, 0}, {0, 9}, {9, 9}, {9, 0}};
  EXPECT_EQ(HoledPolygon(points(outer), {{{2, 2}, {4, 2}, {4, 4}, {2, 4}}}).area(), 81.0 - 4.0);
  EXPECT_EQ(HoledPolygon(points(outer), {{{2, 2}, {2, 4}, {4, 4}, {4, 2}}}).area(), 81.0 + 4.0);
  EXPECT_EQ(HoledPolygon(points(outer), {{{2, 2}, {2, 4}}}).area(), 81.0);
}

TEST(Polygon, ContainsNoPointInOrOnAHole) {
  const HoledPolygon polygon(points({{0, 0}, {0, 9}, {9, 9}, {9, 0}}),
                             {{{2, 2}, {4, 2}, {4, 4}, {2, 4}}, {{6, 6}, {8, 8}}});
  EXPECT_TRUE(polygon.within(Point(1, 1)));
  EXPECT_FALSE(polygon.within(Point(3, 3)));
  EXPECT_FALSE(polygon.within(Point(2, 3)));
  EXPECT_FALSE(polygon.within(Point(4, 4)));
  EXPECT_TRUE(polygon.within(Point(7, 7))) << "two vertices are not a hole";
}

TEST(Polygon, AZoneWithAHoleJudgesOutlinesByIt) {
  const HoledPolygon polygon(points({{0, 0}, {0, 9}, {9, 9}, {9, 0}}), {{{2, 2}, {7, 2}, {7, 7}, {2, 7}}});
  EXPECT_TRUE(polygon.within(squareOutline(0, 2)));
  EXPECT_FALSE(polygon.within(squareOutline(1, 8)));
  EXPECT_TRUE(polygon.overlaps(squareOutline(1, 8)));
  EXPECT_FALSE(polygon.intersects(squareOutline(3, 6)));
  EXPECT_TRUE(polygon.intersects(squareOutline(2, 7)));
  EXPECT_FALSE(polygon.overlaps(squareOutline(2, 7)));
  EXPECT_FALSE(polygon.overlaps(squareOutline(0, 9)));
}

TEST(Polygon, StoresVerticesAsGiven) {
  const Coordinates odd = {{3, 3}, {0, 0}, {0, 0}, {5, -1}, {3, 3}};
  EXPECT_EQ(verticesOf(Polygon("p", points(odd))), odd);
  EXPECT_EQ(verticesOf(Polygon("p", points(counterclockwiseSquare))), counterclockwiseSquare);
}

TEST(Polygon, QuestionsLeaveZoneAndArgumentAsTheyAre) {
  const Polygon polygon("p", points(counterclockwiseSquare));
  const core::PlanarPolygon argument = outline({{0, 0}, {3, 0}, {3, 3}});
  EXPECT_TRUE(polygon.intersects(argument));
  EXPECT_TRUE(polygon.overlaps(argument));
  EXPECT_FALSE(polygon.within(argument));
  EXPECT_EQ(verticesOf(polygon), counterclockwiseSquare);
  EXPECT_EQ(argument.outer().size(), 3U);
}

TEST(Polygon, GetPolygonAppends) {
  const Polygon polygon("p", points({{1, 2}, {3, 4}, {5, 6}}));
  std::vector<Point> out = points({{9, 9}, {8, 8}});
  polygon.getPolygon(out);
  EXPECT_EQ(coordinates(out), (Coordinates{{9, 9}, {8, 8}, {1, 2}, {3, 4}, {5, 6}}));
}

TEST(Polygon, AMadeCopyHasNoHoles) {
  const HoledPolygon polygon(points({{0, 0}, {0, 9}, {9, 9}, {9, 0}}), {{{2, 2}, {4, 2}, {4, 4}, {2, 4}}});
  EXPECT_TRUE(polygon.makeCopy()->within(Point(3, 3)));
  const HoledPolygon copy(polygon);
  EXPECT_FALSE(copy.within(Point(3, 3)));
}

TEST(Polygon, CopiesMovesAndAssignmentsTakeHolesAlong) {
  const auto expectHole = [](const Polygon& polygon) {
    EXPECT_TRUE(polygon.within(Point(1, 1)));
    EXPECT_FALSE(polygon.within(Point(3, 3)));
    EXPECT_EQ(polygon.area(), 81.0 - 4.0);
  };
  const HoledPolygon holed(points({{0, 0}, {0, 9}, {9, 9}, {9, 0}}), {{{2, 2}, {4, 2}, {4, 4}, {2, 4}}});
  Polygon copy(holed);
  expectHole(copy);
  Polygon assigned("other", points(clockwiseSquare));
  assigned = copy;
  expectHole(assigned);
  Polygon moved(std::move(assigned));
  expectHole(moved);
  Polygon moveAssigned("other", points(clockwiseSquare));
  moveAssigned = std::move(moved);
  expectHole(moveAssigned);
}

TEST(Polygon, AMadeCopyKeepsVerticesInOrder) {
  Polygon polygon("p", points(counterclockwiseSquare));
  polygon.setName("renamed");
  const auto copy = std::dynamic_pointer_cast<Polygon>(polygon.makeCopy());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->name(), "renamed");
  EXPECT_EQ(verticesOf(*copy), counterclockwiseSquare);
}

TEST(PolygonSave, WritesShapeThenEachVertexXBeforeY) {
  const Polygon polygon("p", points({{0.5, 1}, {2, 3}}));
  SettingsManager settings;
  const LogCapture log(LogLevel::Debug);
  polygon.save(settings);
  EXPECT_EQ(log.texts(LogLevel::Debug),
            (std::vector<std::string>{"set .shape to: polygon", "set Polygon.Point.x to: 0.5",
                                      "set Polygon.Point.y to: 1", "set Polygon.Point.x to: 2",
                                      "set Polygon.Point.y to: 3"}));
  EXPECT_EQ(currentPath(settings), "");
}

TEST(PolygonSave, GivesTheDocumentedEntry) {
  SettingsManager settings;
  Polygon("p", points({{0.5, 1}, {2, 3}})).save(settings);
  SettingsManager expected;
  loadText(expected, R"({"shape": "polygon", "Polygon": {"Point": [{"x": 0.5, "y": 1}, {"x": 2, "y": 3}]}})");
  EXPECT_EQ(saveText(settings), saveText(expected));
}

TEST(PolygonSave, OfAnEmptyPolygonWritesNoPoint) {
  SettingsManager settings;
  Polygon("p").save(settings);
  EXPECT_EQ(settings.get<std::string>("shape"), "polygon");
  ASSERT_TRUE(settings.exists("Polygon"));
  settings.pathPush("Polygon");
  EXPECT_EQ(settings.getChildCount("Point"), 0);
}

TEST(PolygonSave, OverALongerListLeavesItsRest) {
  SettingsManager settings;
  Polygon("p", points(clockwiseSquare)).save(settings);
  Polygon("p", points({{7, 7}, {8, 8}})).save(settings);
  EXPECT_EQ(verticesOf(Polygon("loaded", settings)), (Coordinates{{7, 7}, {8, 8}, {1, 1}, {1, 0}}));
}

TEST(PolygonLoad, ReadsEachVertexYBeforeXAndNotTheShape) {
  SettingsManager settings;
  loadText(settings,
           R"({"shape": "nonsense", "Polygon": {"Point": [{"x": 1, "y": 2}, {"x": 3, "y": 4.5}]}})");
  Polygon polygon("p");
  const LogCapture log;
  polygon.load(settings);
  EXPECT_EQ(log.texts(LogLevel::Trace),
            (std::vector<std::string>{"got Polygon.Point.y, value: 2", "got Polygon.Point.x, value: 1",
                                      "got Polygon.Point.y, value: 4.5", "got Polygon.Point.x, value: 3"}));
  EXPECT_EQ(log.records().size(), 4U);
  EXPECT_EQ(verticesOf(polygon), (Coordinates{{1, 2}, {3, 4.5}}));
  EXPECT_EQ(currentPath(settings), "");
}

TEST(PolygonLoad, ReplacesTheVertices) {
  SettingsManager settings;
  loadText(settings, R"({"Polygon": {"Point": {"x": 1, "y": 2}}})");
  Polygon polygon("p", points(clockwiseSquare));
  polygon.load(settings);
  EXPECT_EQ(verticesOf(polygon), (Coordinates{{1, 2}}));
}

TEST(PolygonLoad, OfNoPointsGivesAnEmptyPolygon) {
  for (const char* document : {R"({"Polygon": {"Point": []}})", R"({"Polygon": {}})", "{}"}) {
    SettingsManager settings;
    loadText(settings, document);
    Polygon polygon("p", points(clockwiseSquare));
    polygon.load(settings);
    EXPECT_TRUE(verticesOf(polygon).empty()) << document;
    EXPECT_EQ(currentPath(settings), "") << document;
  }
}

TEST(PolygonLoad, KeepsHolesAsTheyAre) {
  HoledPolygon polygon(points({{0, 0}, {0, 9}, {9, 9}, {9, 0}}), {{{2, 2}, {4, 2}, {4, 4}, {2, 4}}});
  SettingsManager settings;
  loadText(settings, R"({"Polygon": {"Point": [{"x": 0, "y": 0}, {"x": 0, "y": 8}, {"x": 8, "y": 0}]}})");
  polygon.load(settings);
  EXPECT_FALSE(polygon.within(Point(3, 3)));
  EXPECT_TRUE(polygon.within(Point(1, 1)));
}

TEST(PolygonLoad, KeepsAllOfTwentyPoints) {
  SettingsManager settings;
  Coordinates vertices;
  for (int i = 0; i < 20; ++i) {
    vertices.emplace_back(i, i * i);
  }
  Polygon("p", points(vertices)).save(settings);
  EXPECT_EQ(verticesOf(Polygon("loaded", settings)), vertices);
}

TEST(PolygonLoad, AFailedReadLeavesTheVerticesBeforeItAndThePathInside) {
  for (const char* bad :
       {R"({"x": 3})", R"({"y": 3})", R"({"x": "far", "y": 3})", R"({"x": 3, "y": "far"})", R"({})"}) {
    SettingsManager settings;
    loadText(settings,
             R"({"Polygon": {"Point": [{"x": 1, "y": 2}, )" + std::string(bad) + R"(, {"x": 5, "y": 6}]}})");
    Polygon polygon("p", points(clockwiseSquare));
    EXPECT_THROW(polygon.load(settings), boost::property_tree::ptree_error) << bad;
    EXPECT_EQ(verticesOf(polygon), (Coordinates{{1, 2}})) << bad;
    EXPECT_EQ(currentPath(settings), "Polygon.Point") << bad;
  }
}

TEST(PolygonLoad, AFailedReadLeavesTheConstructor) {
  SettingsManager settings;
  loadText(settings, R"({"Polygon": {"Point": [{"x": 1}]}})");
  EXPECT_THROW(Polygon("p", settings), boost::property_tree::ptree_bad_path);
  SettingsManager text;
  loadText(text, R"({"Polygon": {"Point": [{"x": 1, "y": "two"}]}})");
  EXPECT_THROW(Polygon("p", text), boost::property_tree::ptree_bad_data);
}

TEST(PolygonLoad, WorksBelowThePathItIsGiven) {
  SettingsManager settings;
  loadText(settings, R"({"Zone": [{}, {"Polygon": {"Point": [{"x": 1, "y": 2}]}}]})");
  settings.pathPush("Zone", 1, nullptr);
  const Polygon polygon("p", settings);
  EXPECT_EQ(verticesOf(polygon), (Coordinates{{1, 2}}));
  EXPECT_EQ(currentPath(settings), "Zone");
}

TEST(PolygonRoundTrip, RestoresAStoredClosingVertexLikeAnyOther) {
  Coordinates closed = clockwiseSquare;
  closed.push_back(closed.front());
  SettingsManager settings;
  Polygon("p", points(closed)).save(settings);
  Polygon loaded("loaded");
  loaded.load(settings);
  EXPECT_EQ(verticesOf(loaded), closed);
}

TEST(PolygonRoundTrip, RestoresAnyFiniteDoubleBitForBit) {
  std::mt19937_64 engine(41);
  for (int i = 0; i < 200; ++i) {
    Coordinates vertices;
    while (vertices.size() < 16) {
      const auto x = std::bit_cast<double>(engine());
      const auto y = std::bit_cast<double>(engine());
      if (std::isfinite(x) && std::isfinite(y)) {
        vertices.emplace_back(x, y);
      }
    }
    SettingsManager settings;
    Polygon("p", points(vertices)).save(settings);
    SettingsManager reread;
    loadText(reread, saveText(settings));
    const Coordinates loaded = verticesOf(Polygon("loaded", reread));
    ASSERT_EQ(loaded.size(), vertices.size());
    for (std::size_t vertex = 0; vertex < vertices.size(); ++vertex) {
      ASSERT_EQ(std::bit_cast<std::uint64_t>(loaded[vertex].first),
                std::bit_cast<std::uint64_t>(vertices[vertex].first))
          << vertices[vertex].first;
      ASSERT_EQ(std::bit_cast<std::uint64_t>(loaded[vertex].second),
                std::bit_cast<std::uint64_t>(vertices[vertex].second))
          << vertices[vertex].second;
    }
  }
}

}  // namespace
}  // namespace orvantis::filter::detection
