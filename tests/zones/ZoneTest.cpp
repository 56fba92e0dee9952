#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone.h>
#include <logging/LoggingManager.h>
#include <settings/SettingsManager.h>

#include "support/AllocationCounter.h"
#include "support/LogCapture.h"
#include "support/Settings.h"
#include "zones/Shapes.h"
#include "zones/VirtualSlot.h"

namespace orvantis::filter::detection {
namespace {

using testing::AllocationCounter;
using testing::nameOf;
using testing::points;
using testing::slotOf;
using testing::squareOutline;

static_assert(std::is_abstract_v<Zone>);
static_assert(std::has_virtual_destructor_v<Zone>);
static_assert(std::is_base_of_v<LoggedComponent, Zone>);
static_assert(std::is_base_of_v<Polygon, Rectangle>);

// One zone of each shape, all of them around (1, 1).
std::vector<std::shared_ptr<Zone>> oneOfEach() {
  return {std::make_shared<Polygon>("p", points({{0, 0}, {0, 2}, {2, 2}, {2, 0}})),
          std::make_shared<Rectangle>("r", points({{0, 0}, {2, 2}}), 0.0),
          std::make_shared<Sector>("s", -0.5, 1.5, 5.0)};
}

// None of the three shapes that this document describes is near (1, 1).
const char* const otherShapes =
    R"({"Polygon": {}, "Rectangle": {"rotation": 0, "Point": [{"x": 7, "y": 7}, {"x": 8, "y": 8}]},
        "Sector": {"minAngle": 0, "maxAngle": 0, "radius": 0}})";

TEST(Zone, VirtualFunctionsKeepTheirSlots) {
  EXPECT_EQ(slotOf(&Zone::setLogger), 2U);
  EXPECT_EQ(slotOf(&Zone::getLogger), 3U);
  EXPECT_EQ(slotOf(&Zone::makeCopy), 4U);
  EXPECT_EQ(slotOf(static_cast<bool (Zone::*)(const Zone::polygon&) const>(&Zone::within)), 5U);
  EXPECT_EQ(slotOf(static_cast<bool (Zone::*)(const Point&) const>(&Zone::within)), 6U);
  EXPECT_EQ(slotOf(&Zone::intersects), 7U);
  EXPECT_EQ(slotOf(&Zone::overlaps), 8U);
  EXPECT_EQ(slotOf(&Zone::area), 9U);
  EXPECT_EQ(slotOf(&Zone::save), 10U);
  EXPECT_EQ(slotOf(&Zone::load), 11U);
  EXPECT_EQ(slotOf(&Zone::type), 12U);
}

TEST(Zone, TypeIsTheSameStringObjectOnEachCall) {
  const Polygon polygon("p");
  const Rectangle rectangle("r", points({{0, 0}, {1, 1}}), 0.0);
  const Sector sector("s", 0, 1, 1);
  EXPECT_EQ(&polygon.type(), &Polygon::TYPE_NAME);
  EXPECT_EQ(&rectangle.type(), &Rectangle::TYPE_NAME);
  EXPECT_EQ(&sector.type(), &Sector::TYPE_NAME);
  EXPECT_EQ(Polygon::TYPE_NAME, "polygon");
  EXPECT_EQ(Rectangle::TYPE_NAME, "rectangle");
  EXPECT_EQ(Sector::TYPE_NAME, "sector");
}

TEST(Zone, CanBeNamedAndUnnamed) {
  for (const auto& zone : oneOfEach()) {
    zone->setName("Dock 7");
    EXPECT_EQ(zone->name(), "Dock 7");
    zone->setName("");
    EXPECT_EQ(zone->name(), "");
    zone->name() = "changed in place";
    EXPECT_EQ(std::as_const(*zone).name(), "changed in place");
    EXPECT_EQ(&zone->name(), &std::as_const(*zone).name());
  }
}

TEST(Zone, WritesWithoutALoggerNameUntilItIsGivenOne) {
  for (const auto& zone : oneOfEach()) {
    EXPECT_EQ(nameOf(zone->getLogger()), "");
    zone->setLogger(LoggingManager::getInstance().getLogger("given"));
    EXPECT_EQ(nameOf(zone->getLogger()), "given");
  }
}

TEST(Zone, AMadeCopyHasTheNameAndTheDefaultLogger) {
  for (const auto& zone : oneOfEach()) {
    zone->setName("changed");
    zone->setLogger(LoggingManager::getInstance().getLogger("given"));
    const std::shared_ptr<Zone> copy = zone->makeCopy();
    EXPECT_EQ(copy->name(), "changed");
    EXPECT_EQ(&copy->type(), &zone->type());
    EXPECT_EQ(nameOf(copy->getLogger()), "");
  }
}

TEST(Zone, AMadeCopyIsNotTouchedByLaterChanges) {
  for (const auto& zone : oneOfEach()) {
    const std::shared_ptr<Zone> copy = zone->makeCopy();
    SettingsManager settings;
    testing::loadText(settings, otherShapes);
    const std::string name = copy->name();
    const double area = copy->area();
    zone->load(settings);
    zone->setName("other");
    EXPECT_FALSE(zone->within(Point(1, 1)));
    EXPECT_TRUE(copy->within(Point(1, 1)));
    EXPECT_EQ(copy->area(), area);
    EXPECT_EQ(copy->name(), name);
  }
}

template <typename Shape>
void expectCopiesTakeLoggerNameAndGeometry(const Shape& shape, const Shape& other) {
  Shape source = shape;
  source.setName("source");
  source.setLogger(LoggingManager::getInstance().getLogger("given"));
  const auto expectSame = [&](const Shape& zone) {
    EXPECT_EQ(zone.name(), "source");
    EXPECT_EQ(nameOf(zone.getLogger()), "given");
    EXPECT_EQ(zone.area(), shape.area());
    EXPECT_TRUE(zone.within(Point(1, 1)));
  };
  const Shape copy(source);
  expectSame(copy);
  Shape assigned = other;
  assigned = source;
  expectSame(assigned);
  Shape& same = assigned;
  assigned = same;
  expectSame(assigned);
  Shape moved(std::move(assigned));
  expectSame(moved);
  Shape moveAssigned = other;
  moveAssigned = std::move(moved);
  expectSame(moveAssigned);
  source.setName("renamed");
  source.setLogger(Logger());
  SettingsManager settings;
  testing::loadText(settings, otherShapes);
  source.load(settings);
  EXPECT_FALSE(source.within(Point(1, 1)));
  expectSame(copy);
}

TEST(Zone, CopiesAndMovesTakeLoggerNameAndGeometry) {
  expectCopiesTakeLoggerNameAndGeometry(Polygon("p", points({{0, 0}, {0, 2}, {2, 2}, {2, 0}})),
                                        Polygon("other"));
  expectCopiesTakeLoggerNameAndGeometry(Rectangle("r", points({{0, 0}, {2, 2}}), 10.0),
                                        Rectangle("other", points({{7, 7}, {8, 8}}), 20.0));
  expectCopiesTakeLoggerNameAndGeometry(Sector("s", -0.5, 1.5, 5.0),
                                        Sector("other", 2.0, 3.0, 1.0, Point(9, 9)));
}

// What is left of its geometry stands beside it.
template <typename Shape>
void expectMovedFromKeepsNameAndLogger(const Shape& shape, double areaLeft) {
  Shape source = shape;
  source.setName("a name that is too long for a string's own buffer");
  source.setLogger(LoggingManager::getInstance().getLogger("given"));
  const auto expectKept = [&](const Shape& zone) {
    EXPECT_EQ(zone.name(), "a name that is too long for a string's own buffer") << shape.type();
    EXPECT_EQ(nameOf(zone.getLogger()), "given") << shape.type();
    EXPECT_EQ(zone.area(), areaLeft) << shape.type();
  };
  Shape made(std::move(source));
  expectKept(source);  // NOLINT(bugprone-use-after-move): what is left is the point of it
  EXPECT_EQ(made.name(), source.name());
  EXPECT_EQ(made.area(), shape.area());
  Shape assigned = shape;
  assigned = std::move(made);
  expectKept(made);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(assigned.name(), made.name());
  EXPECT_EQ(assigned.area(), shape.area());
}

TEST(Zone, AShapeThatWasMovedFromKeepsItsNameAndLogger) {
  expectMovedFromKeepsNameAndLogger(Polygon("p", points({{0, 0}, {0, 2}, {2, 2}, {2, 0}})), 0.0);
  expectMovedFromKeepsNameAndLogger(Rectangle("r", points({{0, 0}, {2, 2}}), 0.0), 0.0);
  expectMovedFromKeepsNameAndLogger(Sector("s", -0.5, 1.5, 5.0), 25.0);
}

TEST(Zone, AMovedFromRectangleKeepsItsDefinition) {
  Rectangle source("r", points({{0, 0}, {2, 1}}), 30.0);
  const Rectangle moved(std::move(source));
  std::vector<Point> corners;
  double rotation = 0.0;
  source.getRectangle(corners, rotation);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(testing::coordinates(corners), (testing::Coordinates{{0, 0}, {2, 1}}));
  EXPECT_EQ(rotation, 30.0);
  EXPECT_TRUE(testing::verticesOf(source).empty());
  EXPECT_TRUE(source.makeCopy()->within(Point(1, 0.5))) << "a copy is made from the definition";
}

TEST(Zone, PointTestsAreInDoubles) {
  const Polygon polygon("p", points({{0, 0}, {0, 1}, {1, 1}, {1, 0}}));
  const Rectangle rectangle("r", points({{0, 0}, {1, 1}}), 0.0);
  const Sector sector("s", -0.5, 0.5, 1.0);
  const Sector narrow("n", 0.0, 1e-3, 10.0);
  // In single precision both are 1.
  constexpr double inside = 1.0 - 1e-9;
  constexpr double outside = 1.0 + 1e-9;
  for (const Zone* zone : {static_cast<const Zone*>(&polygon), static_cast<const Zone*>(&rectangle)}) {
    for (const double other : {0.5, inside}) {
      EXPECT_TRUE(zone->within(Point(inside, other)));
      EXPECT_TRUE(zone->within(Point(other, inside)));
      EXPECT_FALSE(zone->within(Point(outside, other)));
      EXPECT_FALSE(zone->within(Point(other, outside)));
    }
  }
  EXPECT_TRUE(sector.within(Point(inside, 0.0)));
  EXPECT_FALSE(sector.within(Point(outside, 0.0)));
  EXPECT_TRUE(Sector("up", 1.0, 2.0, 1.0).within(Point(0.0, inside)));
  EXPECT_FALSE(Sector("up", 1.0, 2.0, 1.0).within(Point(0.0, outside)));
  EXPECT_TRUE(narrow.within(Point(5.0, 5e-3 - 1e-8)));
  EXPECT_FALSE(narrow.within(Point(5.0, 5e-3 + 1e-8)));
  EXPECT_FALSE(narrow.within(Point(5.0, -1e-320)));
}

TEST(Zone, AskingForAPointAllocatesNothing) {
  for (const auto& zone : oneOfEach()) {
    const AllocationCounter counter;
    const bool inside = zone->within(Point(1, 1));
    const bool outside = zone->within(Point(9, 9));
    const bool onABorder = zone->within(Point(0, 1));
    EXPECT_EQ(counter.count(), 0U) << zone->type();
    EXPECT_TRUE(inside) << zone->type();
    EXPECT_FALSE(outside) << zone->type();
    EXPECT_FALSE(onABorder && zone->type() != "sector") << zone->type();
  }
}

// Every answer that a zone gives without being changed.
std::vector<double> answersOf(const Zone& zone) {
  std::vector<double> answers = {zone.area(), zone.makeCopy()->area()};
  for (double low = -1.0; low < 6.0; low += 0.25) {
    const core::PlanarPolygon outline = squareOutline(low, low + 1.0);
    for (const bool answer : {zone.within(Point(low, 1.0)), zone.within(outline), zone.intersects(outline),
                              zone.overlaps(outline)}) {
      answers.push_back(answer ? 1.0 : 0.0);
    }
  }
  SettingsManager settings;
  zone.save(settings);
  answers.push_back(static_cast<double>(testing::saveText(settings).size()));
  return answers;
}

TEST(Zone, ManyThreadsMayAskItAtOnce) {
  for (const auto& zone : oneOfEach()) {
    const std::vector<double> expected = answersOf(*zone);
    std::vector<std::vector<double>> answers(4);
    std::vector<std::thread> threads;
    for (std::vector<double>& mine : answers) {
      threads.emplace_back([&mine, &zone] { mine = answersOf(*zone); });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    for (const std::vector<double>& mine : answers) {
      EXPECT_EQ(mine, expected) << zone->type();
    }
  }
}

TEST(Zone, QuestionsAreAskedThroughTheBase) {
  for (const auto& zone : oneOfEach()) {
    EXPECT_TRUE(zone->within(squareOutline(0.5, 1.5))) << zone->type();
    EXPECT_FALSE(zone->intersects(squareOutline(20, 21))) << zone->type();
    EXPECT_TRUE(zone->overlaps(squareOutline(1, 9))) << zone->type();
  }
}

}  // namespace
}  // namespace orvantis::filter::detection
