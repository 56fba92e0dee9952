#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include <filter/monitor/LineCounter.h>

#include "Frames.h"

// What happens exactly on the line, exactly through an end, and on lines that are none.
namespace orvantis::filter::monitor::testing {
namespace {

using Side = detection::CounterLineDirectionType;

std::vector<Crossing> walk(LineCounter counter, const std::vector<PlanarPoint>& places) {
  std::vector<Crossing> crossings;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto found =
        counter.update(ms(100 * static_cast<std::int64_t>(i)), {box(1, places[i].x(), places[i].y())});
    crossings.insert(crossings.end(), found.begin(), found.end());
  }
  return crossings;
}

LineCounter counterOnXAxis() {
  return LineCounter(oneLine({0.0, 0.0}, {10.0, 0.0}));
}

TEST(LineTies, TheEndsBelongToTheSegment) {
  for (const double x : {0.0, 10.0}) {
    EXPECT_EQ(walk(counterOnXAxis(), {{x, 2}, {x, -2}}).size(), 1U) << x;
    EXPECT_EQ(walk(counterOnXAxis(), {{x, 2}, {x, 0}, {x, -2}}).size(), 1U) << x;
    EXPECT_EQ(walk(counterOnXAxis(), {{x, -2}, {x, 0}, {x, 2}}).size(), 1U) << x;
  }
  EXPECT_EQ(walk(counterOnXAxis(), {{-2, 2}, {2, -2}}).size(), 1U);
}

TEST(LineTies, JustBesideTheEndsIsBeside) {
  const double beside = -0x1p-500;
  const auto point = [](double x, double y) {
    return TrackedObject{1, core::State(x, y, 0.0, 0.0, 0.0), 0.0, 1.0, ""};
  };
  LineCounter counter = counterOnXAxis();
  counter.update(ms(0), {point(beside, 2)});
  EXPECT_TRUE(counter.update(ms(1), {point(beside, -2)}).empty());
  counter.update(ms(2), {point(std::nextafter(10.0, 11.0), -2)});
  EXPECT_TRUE(counter.update(ms(3), {point(std::nextafter(10.0, 11.0), 2)}).empty());
}

TEST(LineTies, AReferencePointOnTheLineIsMetThereOnce) {
  for (const double towards : {2.0, -2.0}) {
    const auto crossings = walk(counterOnXAxis(), {{4, -towards}, {4, 0}, {4, towards}});
    ASSERT_EQ(crossings.size(), 1U) << towards;
    EXPECT_EQ(crossings[0].met, ms(100));
    EXPECT_EQ(crossings[0].where.x(), 4.0);
    EXPECT_EQ(crossings[0].where.y(), 0.0);
  }
}

// Cars of 4.5 by 1.75 that head anywhere, seen at these places every 100 ms.
std::vector<Crossing> drive(double heading, const std::vector<PlanarPoint>& places) {
  LineCounter counter(oneLine({1.0, 0.0}, {11.0, 0.0}));
  std::vector<Crossing> crossings;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const core::State car(places[i].x(), places[i].y(), 4.5, 1.75, heading);
    const auto found = counter.update(ms(100 * static_cast<std::int64_t>(i)), {{1, car, 0.0, 1.5, "car"}});
    crossings.insert(crossings.end(), found.begin(), found.end());
  }
  return crossings;
}

TEST(LineTies, ATurnedBoxGoesThroughTheEndAsAnUnturnedOneDoes) {
  EXPECT_EQ(drive(0.0, {{1, 4}, {1, -4}}).size(), 1U);
  EXPECT_EQ(drive(0.09, {{1, 4}, {1, -4}}).size(), 1U);
  for (double heading = -4.0; heading < 4.0; heading += 0.01) {
    EXPECT_EQ(drive(heading, {{1, 4}, {1, -4}}).size(), 1U) << heading;
    EXPECT_EQ(drive(heading, {{1, -4}, {1, 0}, {1, 4}}).size(), 1U) << heading;
  }
}

TEST(LineTies, ATurnedBoxThatStandsOnTheLineMetItWhenItCameThere) {
  for (double heading = -4.0; heading < 4.0; heading += 0.01) {
    const auto crossings = drive(heading, {{4, 4}, {4.1, 0}, {4.1, 0}, {4.1, 0}, {4.1, -4}});
    ASSERT_EQ(crossings.size(), 1U) << heading;
    EXPECT_EQ(crossings[0].met, ms(100)) << heading;
    EXPECT_EQ(crossings[0].where.x(), 4.1) << heading;
    EXPECT_EQ(crossings[0].accepted, ms(400)) << heading;
  }
}

TEST(LineTies, OnTheLineCountsAsRightOfIt) {
  // From the left it meets the line when it reaches it, from the right when it leaves it.
  const auto fromLeft = walk(counterOnXAxis(), {{4, 2}, {4, 0}, {5, 0}, {6, 0}, {6, -2}});
  ASSERT_EQ(fromLeft.size(), 1U);
  EXPECT_EQ(fromLeft[0].met, ms(100));
  EXPECT_EQ(fromLeft[0].where.x(), 4.0);
  const auto fromRight = walk(counterOnXAxis(), {{4, -2}, {4, 0}, {5, 0}, {6, 0}, {6, 2}});
  ASSERT_EQ(fromRight.size(), 1U);
  EXPECT_EQ(fromRight[0].met, ms(300));
  EXPECT_EQ(fromRight[0].where.x(), 6.0);
}

TEST(LineTies, SlidingAlongTheLineBeyondItsEndIsDecidedWhereItMeetsTheLine) {
  EXPECT_EQ(walk(counterOnXAxis(), {{4, 2}, {4, 0}, {-4, 0}, {-4, -2}}).size(), 1U);
  EXPECT_EQ(walk(counterOnXAxis(), {{-4, -2}, {-4, 0}, {4, 0}, {4, 2}}).size(), 1U);
  EXPECT_EQ(walk(counterOnXAxis(), {{-4, 2}, {-4, 0}, {4, 0}, {4, -2}}).size(), 0U);
  EXPECT_EQ(walk(counterOnXAxis(), {{4, -2}, {4, 0}, {-4, 0}, {-4, 2}}).size(), 0U);
}

TEST(LineTies, TouchingTheLineIsNotClear) {
  EXPECT_TRUE(walk(counterOnXAxis(), {{4, 2}, {4, -0.5}}).empty());
  EXPECT_TRUE(walk(counterOnXAxis(), {{4, 0.5}, {4, -2}}).empty());
  EXPECT_EQ(walk(counterOnXAxis(), {{4, 0.75}, {4, -0.75}}).size(), 1U);
}

TEST(LineTies, TheProlongedLineDividesTheSidesForTheFootprintToo) {
  // Far beside the segment the box still has to get clear of the line's prolongation.
  EXPECT_TRUE(walk(counterOnXAxis(), {{-40, 0.25}, {4, -2}}).empty());
}

TEST(LineTies, TheReferencePointHasToBeClearToo) {
  // The halves of this bow almost cancel, and its centroid lies outside of its hull, at (3, 3.5).
  const TrackedObject bow{1, core::State(ring({{2, 0.5}, {0, 3}, {3, 1}, {0.5, 3.5}})), 0.0, 1.0, ""};
  const auto verdict = [&](double intercept, double clearance) {
    LineCounterOptions options;
    options.clearance = clearance;
    LineCounter counter(oneLine({0.0, intercept}, {intercept, 0.0}), options);
    counter.update(ms(0), {bow});
    return counter.explain("L", 1).verdict;
  };
  EXPECT_EQ(verdict(3.75, 0.0), CrossingVerdict::NeverClear);  // runs through the hull
  EXPECT_EQ(verdict(5.0, 0.0), CrossingVerdict::NeverClear);   // between the hull and the reference point
  EXPECT_EQ(verdict(7.0, 0.0), CrossingVerdict::NotOver);
  EXPECT_EQ(verdict(7.0, 1.0), CrossingVerdict::NeverClear);  // the reference point is 0.35 off
}

TEST(LineTies, ALineWithoutLengthCountsNothing) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double inf = std::numeric_limits<double>::infinity();
  for (const PlanarPoint& second : {PlanarPoint(4, 0), PlanarPoint(nan, 0), PlanarPoint(4, inf)}) {
    LineCounter counter(oneLine({4.0, 0.0}, second));
    counter.update(ms(0), {box(1, 4, 2)});
    EXPECT_TRUE(counter.update(ms(1), {box(1, 4, -2)}).empty());
    EXPECT_EQ(counter.explain("L", 1).verdict, CrossingVerdict::NoLength);
    EXPECT_TRUE(counter.directions("L").sides.empty());
  }
}

TEST(LineTies, ALineThatWasMovedFromCountsNothing) {
  auto lines = oneLine({0.0, 0.0}, {10.0, 0.0});
  const detection::CounterLine taken = std::move(lines.begin()->second);
  LineCounter counter(lines);
  counter.update(ms(0), {box(1, 4, 2)});
  EXPECT_TRUE(counter.update(ms(1), {box(1, 4, -2)}).empty());
  EXPECT_EQ(counter.explain("L", 1).verdict, CrossingVerdict::NoLength);
}

TEST(LineTies, ACounterWithoutLinesFollowsTracksAllTheSame) {
  LineCounter counter({});
  EXPECT_TRUE(counter.update(ms(0), {box(1, 4, 2)}).empty());
  EXPECT_EQ(counter.numTracks(), 1U);
  EXPECT_TRUE(counter.tallies().empty());
}

TEST(LineTies, FarFromTheOriginTheSidesAreStillExact) {
  // Metres of a map grid: a line of 10 m, a point object 2^-29 m off it, which is the last bit there is.
  const double x = 4'500'000.0;
  const double y = 5'700'000.0;
  const double bit = std::nextafter(y, 2 * y) - y;
  LineCounter counter(oneLine({x, y}, {x + 10.0, y}));
  const auto point = [&](double offset) {
    return TrackedObject{1, core::State(x + 5.0, y + offset, 0.0, 0.0, 0.0), 0.0, 1.0, ""};
  };
  counter.update(ms(0), {point(bit)});
  EXPECT_EQ(counter.update(ms(1), {point(-bit)}).size(), 1U);
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
