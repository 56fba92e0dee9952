#include <cstdint>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/CounterLine.h>
#include <logging/LoggingManager.h>

#include "support/LogCapture.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::LogCapture;

using Point = CounterLine::point;
using Side = CounterLineDirectionType;

constexpr auto wantedOn = "CounterLine given_direction cannot be ON, it must be LEFT or RIGHT";

std::vector<std::pair<double, double>> pointsOf(const CounterLine& line) {
  std::vector<std::pair<double, double>> points;
  for (const Point& point : line.getPoints()) {
    points.emplace_back(point.x(), point.y());
  }
  return points;
}

using Pairs = std::vector<std::pair<double, double>>;

template <typename Call>
std::string whatIsThrown(const Call& call) {
  try {
    call();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing thrown";
}

// What the logger of the line is called.
std::string loggerOf(const CounterLine& line) {
  const LogCapture log;
  line.getLogger().errorStream().write("who?");
  return log.records().at(0).logger;
}

TEST(CounterLineSides, HaveTheirPublishedValues) {
  EXPECT_EQ(static_cast<int>(Side::LEFT), 0);
  EXPECT_EQ(static_cast<int>(Side::RIGHT), 1);
  EXPECT_EQ(static_cast<int>(Side::ON), 2);
  static_assert(std::is_same_v<std::underlying_type_t<Side>, std::int32_t>);
}

TEST(CounterLineSize, IsTwoAndCanBeReferredTo) {
  const int* const size = &CounterLine::POINTS_VECTOR_SIZE;
  EXPECT_EQ(*size, 2);
  static_assert(std::is_same_v<decltype(CounterLine::POINTS_VECTOR_SIZE), const int>);
}

TEST(CounterLine, StartsWithoutNameAtTheOrigin) {
  const CounterLine line;
  EXPECT_EQ(line.getName(), "");
  EXPECT_EQ(pointsOf(line), (Pairs{{0.0, 0.0}, {0.0, 0.0}}));
  EXPECT_EQ(loggerOf(line), "");
}

TEST(CounterLine, KeepsTheOrderOfItsPointsWithoutAReference) {
  for (const Side side : {Side::LEFT, Side::RIGHT, Side::ON}) {
    const CounterLine line("L1", Point(1.5, 2.0), Point(3.0, 4.0), nullptr, side);
    EXPECT_EQ(line.getName(), "L1");
    EXPECT_EQ(pointsOf(line), (Pairs{{1.5, 2.0}, {3.0, 4.0}}));
    const CounterLine same("L2", std::vector<Point>{{1.5, 2.0}, {3.0, 4.0}}, nullptr, side);
    EXPECT_EQ(same.getName(), "L2");
    EXPECT_EQ(pointsOf(same), (Pairs{{1.5, 2.0}, {3.0, 4.0}}));
  }
}

TEST(CounterLine, SwapsItsPointsWhenTheReferenceIsOnTheOtherSide) {
  const Point first(0.0, 0.0);
  const Point second(1.0, 0.0);
  const Point below(0.0, -1.0);
  const Point above(0.0, 1.0);
  const Pairs kept = {{0.0, 0.0}, {1.0, 0.0}};
  const Pairs swapped = {{1.0, 0.0}, {0.0, 0.0}};
  EXPECT_EQ(pointsOf(CounterLine("L", first, second, &below, Side::LEFT)), swapped);
  EXPECT_EQ(pointsOf(CounterLine("L", first, second, &below, Side::RIGHT)), kept);
  EXPECT_EQ(pointsOf(CounterLine("L", first, second, &above, Side::LEFT)), kept);
  EXPECT_EQ(pointsOf(CounterLine("L", first, second, &above, Side::RIGHT)), swapped);
  EXPECT_EQ(pointsOf(CounterLine("L", {first, second}, &below, Side::LEFT)), swapped);
  EXPECT_EQ(pointsOf(CounterLine("L", {first, second}, &below, Side::RIGHT)), kept);
}

TEST(CounterLine, TheReferenceLiesOnTheWantedSideAfterConstruction) {
  const Point reference(3.0, -7.0);
  for (const Side side : {Side::LEFT, Side::RIGHT}) {
    EXPECT_EQ(CounterLine("L", {1.0, 1.0}, {-2.0, 5.0}, &reference, side).direction(reference), side);
    EXPECT_EQ(CounterLine("L", {-2.0, 5.0}, {1.0, 1.0}, &reference, side).direction(reference), side);
  }
}

TEST(CounterLine, AReferenceOnTheLineAlwaysSwaps) {
  const Pairs swapped = {{1.0, 0.0}, {0.0, 0.0}};
  for (const Point& reference : {Point(5.0, 0.0), Point(0.0, 0.0), Point(0.5, 1e-7), Point(0.5, -1e-7)}) {
    for (const Side side : {Side::LEFT, Side::RIGHT}) {
      EXPECT_EQ(pointsOf(CounterLine("L", {0.0, 0.0}, {1.0, 0.0}, &reference, side)), swapped);
    }
  }
}

TEST(CounterLine, TheReferenceIsTracedOnce) {
  const Point reference(0.0, -1.0);
  const LogCapture log;
  const CounterLine line("L", {0.0, 0.0}, {1.0, 0.0}, &reference, Side::LEFT);
  EXPECT_EQ(log.texts(LogLevel::Trace),
            std::vector<std::string>{"direction::'L':0:-1::::0:0:1:0:--:-1:==:1**-1"});
}

TEST(CounterLine, WithoutReferenceNothingIsTraced) {
  const LogCapture log;
  const CounterLine line("L", {0.0, 0.0}, {1.0, 0.0}, nullptr, Side::ON);
  EXPECT_TRUE(log.records().empty());
}

TEST(CounterLine, OnIsNotASideToWant) {
  const Point reference(0.0, 1.0);
  EXPECT_EQ(whatIsThrown([&] { CounterLine("L", {0.0, 0.0}, {1.0, 0.0}, &reference, Side::ON); }), wantedOn);
  const std::vector<Point> points = {{0.0, 0.0}, {1.0, 0.0}};
  EXPECT_EQ(whatIsThrown([&] { CounterLine("L", points, &reference, Side::ON); }), wantedOn);
}

TEST(CounterLine, OnIsRefusedBeforeTheReferenceIsLookedAt) {
  const Point reference(0.0, 1.0);
  const LogCapture log;
  EXPECT_THROW(CounterLine("L", {0.0, 0.0}, {1.0, 0.0}, &reference, Side::ON), std::runtime_error);
  EXPECT_TRUE(log.records().empty());
}

TEST(CounterLine, TakesExactlyTwoPoints) {
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{3}, std::size_t{1234}}) {
    const std::vector<Point> points(size, Point(1.0, 2.0));
    const std::string message = "CounterLine points size is:" + std::to_string(size) + " must be:2";
    EXPECT_EQ(whatIsThrown([&] { CounterLine("L", points, nullptr, Side::LEFT); }), message);
    CounterLine line("L", {3.0, 4.0}, {5.0, 6.0}, nullptr, Side::LEFT);
    EXPECT_EQ(whatIsThrown([&] { line.setPoints(points); }), message);
    EXPECT_EQ(pointsOf(line), (Pairs{{3.0, 4.0}, {5.0, 6.0}})) << "a refused edit changes nothing";
  }
}

TEST(CounterLine, TheNumberOfPointsIsCheckedBeforeTheWantedSide) {
  const Point reference(0.0, 1.0);
  const std::vector<Point> points(3, Point(0.0, 0.0));
  EXPECT_EQ(whatIsThrown([&] { CounterLine("L", points, &reference, Side::ON); }),
            "CounterLine points size is:3 must be:2");
}

TEST(CounterLine, SetPointsKeepsTheOrderAsGiven) {
  const Point reference(0.0, 1.0);
  CounterLine line("L", {0.0, 0.0}, {1.0, 0.0}, &reference, Side::LEFT);
  line.setPoints({{1.0, 0.0}, {0.0, 0.0}});
  EXPECT_EQ(pointsOf(line), (Pairs{{1.0, 0.0}, {0.0, 0.0}}));
  EXPECT_EQ(line.direction(reference), Side::RIGHT);
}

TEST(CounterLine, CanBeRenamed) {
  CounterLine line("L", {0.0, 0.0}, {1.0, 0.0}, nullptr, Side::LEFT);
  line.setName("a.b");
  EXPECT_EQ(line.getName(), "a.b");
  line.setName("");
  EXPECT_EQ(line.getName(), "");
}

TEST(CounterLineValue, CopiesAreIndependent) {
  CounterLine source("L", {1.0, 2.0}, {3.0, 4.0}, nullptr, Side::LEFT);
  source.setLogger(LoggingManager::getInstance().getLogger("lines"));
  const CounterLine copy(source);
  CounterLine assigned;
  assigned = source;
  source.setName("renamed");
  source.setPoints({{9.0, 9.0}, {8.0, 8.0}});
  for (const CounterLine* line : std::vector<const CounterLine*>{&copy, &assigned}) {
    EXPECT_EQ(line->getName(), "L");
    EXPECT_EQ(pointsOf(*line), (Pairs{{1.0, 2.0}, {3.0, 4.0}}));
    EXPECT_EQ(loggerOf(*line), "lines");
  }
}

TEST(CounterLineValue, AssignmentToItselfChangesNothing) {
  CounterLine line("L", {1.0, 2.0}, {3.0, 4.0}, nullptr, Side::LEFT);
  const CounterLine& same = line;
  line = same;
  EXPECT_EQ(line.getName(), "L");
  EXPECT_EQ(pointsOf(line), (Pairs{{1.0, 2.0}, {3.0, 4.0}}));
}

TEST(CounterLineValue, MovingTakesEverythingAndLeavesNoPoints) {
  CounterLine source("L", {1.0, 2.0}, {3.0, 4.0}, nullptr, Side::LEFT);
  source.setLogger(LoggingManager::getInstance().getLogger("lines"));
  CounterLine moved(std::move(source));
  EXPECT_EQ(moved.getName(), "L");
  EXPECT_EQ(pointsOf(moved), (Pairs{{1.0, 2.0}, {3.0, 4.0}}));
  EXPECT_EQ(loggerOf(moved), "lines");
  EXPECT_TRUE(source.getPoints().empty());  // NOLINT(bugprone-use-after-move): that is the promise under test

  CounterLine assigned;
  assigned = std::move(moved);
  EXPECT_EQ(assigned.getName(), "L");
  EXPECT_EQ(pointsOf(assigned), (Pairs{{1.0, 2.0}, {3.0, 4.0}}));
  EXPECT_EQ(loggerOf(assigned), "lines");
  EXPECT_TRUE(moved.getPoints().empty());  // NOLINT(bugprone-use-after-move)
}

TEST(CounterLineValue, AMovedFromLineCanBeUsedAgain) {
  CounterLine line("L", {1.0, 2.0}, {3.0, 4.0}, nullptr, Side::LEFT);
  const CounterLine moved(std::move(line));
  line.setPoints({{0.0, 0.0}, {1.0, 0.0}});  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(line.direction(Point(0.0, 1.0)), Side::LEFT);
}

}  // namespace
}  // namespace orvantis::filter::detection
