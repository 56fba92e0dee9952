#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/CounterLine.h>
#include <logging/LoggingManager.h>

#include "support/AllocationCounter.h"
#include "support/LogCapture.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::AllocationCounter;
using orvantis::testing::LogCapture;
using orvantis::testing::Record;

using Point = CounterLine::point;
using Side = CounterLineDirectionType;
using Texts = std::vector<std::string>;

const double infinity = std::numeric_limits<double>::infinity();
const double nan = std::numeric_limits<double>::quiet_NaN();
const double epsilon = std::ldexp(1.0, -23);

CounterLine line(const Point& first, const Point& second) {
  return {"L", first, second, nullptr, Side::LEFT};
}

// On this line the cross product of a point is the point's y, exactly.
const CounterLine& unitLine() {
  static const CounterLine unit = line({0.0, 0.0}, {1.0, 0.0});
  return unit;
}

Side sideOfCross(double cross) {
  return unitLine().direction(Point(0.0, cross));
}

Side opposite(Side side) {
  return side == Side::ON ? Side::ON : side == Side::LEFT ? Side::RIGHT : Side::LEFT;
}

TEST(Direction, IsLeftRightOrOn) {
  EXPECT_EQ(unitLine().direction(Point(0.0, 1.0)), Side::LEFT);
  EXPECT_EQ(unitLine().direction(Point(0.0, -1.0)), Side::RIGHT);
  EXPECT_EQ(unitLine().direction(Point(5.0, 0.0)), Side::ON);
}

TEST(Direction, TheWholeLineCountsAndNotTheSegment) {
  for (const double x : {-1e6, -1.0, 0.0, 0.5, 1.0, 2.0, 1e6}) {
    EXPECT_EQ(unitLine().direction(Point(x, 0.0)), Side::ON) << x;
    EXPECT_EQ(unitLine().direction(Point(x, 0.001)), Side::LEFT) << x;
    EXPECT_EQ(unitLine().direction(Point(x, -0.001)), Side::RIGHT) << x;
  }
}

TEST(Direction, ToleratesSinglePrecisionEpsilon) {
  EXPECT_EQ(sideOfCross(1e-7), Side::ON);
  EXPECT_EQ(sideOfCross(-1e-7), Side::ON);
  EXPECT_EQ(sideOfCross(2e-7), Side::LEFT);
  EXPECT_EQ(sideOfCross(-2e-7), Side::RIGHT);
}

TEST(Direction, TheToleranceIsInclusiveAndOnTheRoundedValue) {
  EXPECT_EQ(sideOfCross(epsilon), Side::ON);
  EXPECT_EQ(sideOfCross(-epsilon), Side::ON);
  EXPECT_EQ(sideOfCross(std::nextafter(epsilon, 0.0)), Side::ON);
  // These doubles are above the tolerance and round down to it.
  EXPECT_EQ(sideOfCross(std::nextafter(epsilon, 1.0)), Side::ON);
  EXPECT_EQ(sideOfCross(-std::nextafter(epsilon, 1.0)), Side::ON);
  // Half way to the next float rounds to the even one, which is the tolerance; the next double rounds up.
  const double halfway = epsilon + std::ldexp(1.0, -47);
  EXPECT_EQ(sideOfCross(halfway), Side::ON);
  EXPECT_EQ(sideOfCross(-halfway), Side::ON);
  EXPECT_EQ(sideOfCross(std::nextafter(halfway, 1.0)), Side::LEFT);
  EXPECT_EQ(sideOfCross(-std::nextafter(halfway, 1.0)), Side::RIGHT);
  const double nextFloat = epsilon + std::ldexp(1.0, -46);
  EXPECT_EQ(sideOfCross(nextFloat), Side::LEFT);
  EXPECT_EQ(sideOfCross(-nextFloat), Side::RIGHT);
}

TEST(Direction, TinyCrossProductsAreOn) {
  for (const double cross : {0.0, -0.0, 5e-324, -5e-324, 1e-300, 1e-50, -1e-40}) {
    EXPECT_EQ(sideOfCross(cross), Side::ON) << cross;
  }
}

TEST(Direction, HugeCrossProductsKeepTheirSign) {
  for (const double cross : {1e30, 1e39, 1e300, std::numeric_limits<double>::max(), infinity}) {
    EXPECT_EQ(sideOfCross(cross), Side::LEFT) << cross;
    EXPECT_EQ(sideOfCross(-cross), Side::RIGHT) << cross;
  }
}

TEST(Direction, NanGivesRight) {
  EXPECT_EQ(sideOfCross(nan), Side::RIGHT);
  EXPECT_EQ(unitLine().direction(Point(nan, 1.0)), Side::RIGHT);
  EXPECT_EQ(unitLine().direction(Point(infinity, 0.0)), Side::RIGHT) << "0 times infinity";
  EXPECT_EQ(line({nan, 0.0}, {1.0, 0.0}).direction(Point(0.0, 1.0)), Side::RIGHT);
  EXPECT_EQ(line({0.0, 0.0}, {1.0, nan}).direction(Point(0.0, 1.0)), Side::RIGHT);
  EXPECT_EQ(line({0.0, 0.0}, {1.0, 1.0}).direction(Point(infinity, infinity)), Side::RIGHT);
  EXPECT_EQ(line({-1e308, -1e308}, {1e308, 1e308}).direction(Point(1e308, 1e308)), Side::RIGHT);
}

TEST(Direction, ALineOfOnePointHasEveryPointOnIt) {
  const CounterLine dot = line({3.0, 4.0}, {3.0, 4.0});
  EXPECT_EQ(dot.direction(Point(100.0, -7.0)), Side::ON);
  EXPECT_EQ(CounterLine().direction(Point(1e300, 1e300)), Side::ON);
}

TEST(Direction, EndPointsAreOnTheirLineWhateverTheRounding) {
  // Each product is rounded by itself, so equal products cancel; a fused multiply-add would leave the
  // rounding error.
  std::mt19937_64 random(4711);
  std::uniform_real_distribution<double> coordinate(-1e7, 1e7);
  for (int round = 0; round < 100000; ++round) {
    const Point first(coordinate(random), coordinate(random));
    const Point second(coordinate(random), coordinate(random));
    const CounterLine random_line = line(first, second);
    ASSERT_EQ(random_line.direction(first), Side::ON) << round;
    ASSERT_EQ(random_line.direction(second), Side::ON) << round;
  }
}

// Coordinates that are whole multiples of 2^-scale, below 2^25 multiples: differences and products then have
// few enough digits for double arithmetic to be exact, so the side follows from integers alone.
struct Multiple {
  std::int64_t x;
  std::int64_t y;

  Point times(int scale) const {
    return {std::ldexp(static_cast<double>(x), -scale), std::ldexp(static_cast<double>(y), -scale)};
  }
};

constexpr int finestScale = 35;
// In units of 2^-70: the last value that rounds to 2^-23 in single precision is 2^-23 + 2^-47.
constexpr std::int64_t tolerance = (std::int64_t{1} << 47) + (std::int64_t{1} << 23);

__extension__ using Integer = __int128;

Side exactSide(const Multiple& first, const Multiple& second, const Multiple& query, int scale) {
  const Integer cross =
      Integer{second.x - first.x} * (query.y - first.y) - Integer{second.y - first.y} * (query.x - first.x);
  const Integer inFinestUnits = cross * (Integer{1} << (2 * (finestScale - scale)));
  if (inFinestUnits > tolerance) {
    return Side::LEFT;
  }
  return inFinestUnits < -tolerance ? Side::RIGHT : Side::ON;
}

TEST(Direction, AgreesWithExactIntegersAtEveryScale) {
  std::mt19937_64 random(20240917);
  int counts[3] = {0, 0, 0};
  for (int round = 0; round < 300000; ++round) {
    const int scale = static_cast<int>(random() % (finestScale + 1));
    const int bits = 2 + static_cast<int>(random() % 24);
    const auto next = [&] {
      return static_cast<std::int64_t>(random() >> (63 - bits)) - (std::int64_t{1} << bits);
    };
    const Multiple first{next(), next()};
    const Multiple second{next(), next()};
    const Multiple query{next(), next()};
    const Side side = exactSide(first, second, query, scale);
    ++counts[static_cast<int>(side)];
    const auto what = [&] {
      std::ostringstream out;
      out << "round " << round << ": (" << first.x << ", " << first.y << ") (" << second.x << ", " << second.y
          << ") (" << query.x << ", " << query.y << ") times 2^-" << scale;
      return out.str();
    };
    ASSERT_EQ(line(first.times(scale), second.times(scale)).direction(query.times(scale)), side) << what();
    ASSERT_EQ(line(second.times(scale), first.times(scale)).direction(query.times(scale)), opposite(side))
        << what();
  }
  for (const int count : counts) {
    EXPECT_GT(count, 10000) << "the cases are lopsided";
  }
}

TEST(Direction, AgreesWithExactIntegersAroundTheTolerance) {
  // First point at the origin, second on the x axis: the cross product is the product of two integers.
  std::mt19937_64 random(31337);
  int counts[3] = {0, 0, 0};
  for (int round = 0; round < 100000; ++round) {
    const std::int64_t x = std::int64_t{1} << (23 + random() % 2);
    const std::int64_t nearby = static_cast<std::int64_t>(random() % 7) - 3;
    const std::int64_t y = (random() % 2 == 0 ? 1 : -1) * (tolerance / x + nearby);
    const Multiple first{0, 0};
    const Multiple second{x, 0};
    const Multiple query{static_cast<std::int64_t>(random() % 1000), y};
    const Side side = exactSide(first, second, query, finestScale);
    ++counts[static_cast<int>(side)];
    ASSERT_EQ(line(first.times(finestScale), second.times(finestScale)).direction(query.times(finestScale)),
              side)
        << x << " times " << y;
  }
  for (const int count : counts) {
    EXPECT_GT(count, 10000) << "the cases are lopsided";
  }
}

TEST(Direction, AgreesWithWideArithmeticAwayFromTheLine) {
  std::mt19937_64 random(99);
  std::uniform_real_distribution<double> coordinate(-1000.0, 1000.0);
  int compared = 0;
  for (int round = 0; round < 200000; ++round) {
    const Point first(coordinate(random), coordinate(random));
    const Point second(coordinate(random), coordinate(random));
    const Point query(coordinate(random), coordinate(random));
    const long double cross = (static_cast<long double>(second.x()) - first.x()) *
                                  (static_cast<long double>(query.y()) - first.y()) -
                              (static_cast<long double>(second.y()) - first.y()) *
                                  (static_cast<long double>(query.x()) - first.x());
    if (std::abs(cross) < 1e-5L) {
      continue;  // within what double arithmetic may lose
    }
    ++compared;
    ASSERT_EQ(line(first, second).direction(query), cross > 0 ? Side::LEFT : Side::RIGHT)
        << "round " << round;
  }
  EXPECT_GT(compared, 199000);
}

TEST(Direction, TakesSinglePrecisionPointsWidened) {
  EXPECT_EQ(unitLine().direction(Eigen::Matrix<float, 2, 1>(0.0F, 1.0F)), Side::LEFT);
  EXPECT_EQ(unitLine().direction(Eigen::Matrix<float, 2, 1>(0.0F, -1.0F)), Side::RIGHT);
  EXPECT_EQ(unitLine().direction(Eigen::Matrix<float, 2, 1>(5.0F, 0.0F)), Side::ON);
  EXPECT_EQ(unitLine().direction(Eigen::Matrix<float, 2, 1>(0.0F, std::numeric_limits<float>::quiet_NaN())),
            Side::RIGHT);
  // No float lies between 16777216 and 16777218: were the line narrowed to the point's precision, it would
  // move.
  const CounterLine upwards = line({16777217.0, 0.0}, {16777217.0, 1.0});
  EXPECT_EQ(upwards.direction(Eigen::Matrix<float, 2, 1>(16777216.0F, 0.0F)), Side::LEFT);
  EXPECT_EQ(upwards.direction(Eigen::Matrix<float, 2, 1>(16777218.0F, 0.0F)), Side::RIGHT);
}

TEST(DirectionTrace, NamesPointLineSignSideAndCrossProduct) {
  const CounterLine kerb("kerb", {0.5, -2.0}, {1.0, 0.0}, nullptr, Side::LEFT);
  const LogCapture log;
  kerb.direction(Point(0.0, 1.25));
  kerb.direction(Point(10.0, 1.0));
  kerb.direction(Point(1.5, 2.0));
  EXPECT_EQ(
      log.records(),
      (std::vector<Record>{{LogLevel::Trace, "", "direction::'kerb':0:1.25::::0.5:-2:1:0:--:1:==:0**2.625"},
                           {LogLevel::Trace, "", "direction::'kerb':10:1::::0.5:-2:1:0:--:-1:==:1**-17.5"},
                           {LogLevel::Trace, "", "direction::'kerb':1.5:2::::0.5:-2:1:0:--:0:==:2**0"}}));
}

TEST(DirectionTrace, ShowsTheCrossProductOfPointsOnTheLine) {
  const LogCapture log;
  sideOfCross(1e-7);
  sideOfCross(-0.0);
  sideOfCross(nan);
  sideOfCross(-infinity);
  EXPECT_EQ(log.texts(LogLevel::Trace), (Texts{"direction::'L':0:1e-07::::0:0:1:0:--:0:==:2**1e-07",
                                               "direction::'L':0:-0::::0:0:1:0:--:0:==:2**-0",
                                               "direction::'L':0:nan::::0:0:1:0:--:-1:==:1**nan",
                                               "direction::'L':0:-inf::::0:0:1:0:--:-1:==:1**-inf"}));
}

TEST(DirectionTrace, ShowsTheCrossProductAsItWasRounded) {
  const LogCapture log;
  sideOfCross(1e39);
  sideOfCross(-1e-46);
  EXPECT_EQ(log.texts(LogLevel::Trace), (Texts{"direction::'L':0:1e+39::::0:0:1:0:--:1:==:0**inf",
                                               "direction::'L':0:-1e-46::::0:0:1:0:--:0:==:2**-0"}));
}

TEST(DirectionTrace, WritesNumbersInTheStreamsDefaultFormatting) {
  const LogCapture log;
  line({1234567.0, 0.1}, {1e20, -1e-5}).direction(Point(1.0 / 3.0, 123456789.0));
  ASSERT_EQ(log.texts(LogLevel::Trace).size(), 1U);
  EXPECT_EQ(log.texts(LogLevel::Trace)[0].find(
                "direction::'L':0.333333:1.23457e+08::::1.23457e+06:0.1:1e+20:-1e-05:--:1:==:0**1.23457e+28"),
            0U)
      << log.texts(LogLevel::Trace)[0];
}

TEST(DirectionTrace, BothOverloadsTraceOnce) {
  const LogCapture log;
  unitLine().direction(Eigen::Matrix<float, 2, 1>(0.25F, 1.5F));
  EXPECT_EQ(log.texts(LogLevel::Trace), Texts{"direction::'L':0.25:1.5::::0:0:1:0:--:1:==:0**1.5"});
}

TEST(DirectionTrace, GoesToTheLinesOwnLogger) {
  CounterLine named = unitLine();
  named.setLogger(LoggingManager::getInstance().getLogger("lines"));
  const LogCapture log;
  named.direction(Point(0.0, 1.0));
  ASSERT_EQ(log.records().size(), 1U);
  EXPECT_EQ(log.records()[0].logger, "lines");
}

TEST(DirectionTrace, IsOffBelowTraceLevelAndChangesNoAnswer) {
  for (const LogLevel level : {LogLevel::Error, LogLevel::Warning, LogLevel::Debug, LogLevel::Trace}) {
    const LogCapture log(level);
    EXPECT_EQ(sideOfCross(1.0), Side::LEFT);
    EXPECT_EQ(sideOfCross(-1.0), Side::RIGHT);
    EXPECT_EQ(sideOfCross(1e-7), Side::ON);
    EXPECT_EQ(log.records().size(), level == LogLevel::Trace ? 3U : 0U);
  }
}

TEST(Direction, AllocatesNothingWhileTracingIsOff) {
  const LogCapture log(LogLevel::Debug);
  const CounterLine named("a name longer than a string's own buffer", {0.0, 0.0}, {1.0, 0.0}, nullptr,
                          Side::LEFT);
  const Point point(0.5, 1.0);
  const Eigen::Matrix<float, 2, 1> singlePoint(0.5F, 1.0F);
  const AllocationCounter allocations;
  int sum = 0;
  for (int i = 0; i < 100; ++i) {
    sum += static_cast<int>(named.direction(point));
    sum += static_cast<int>(named.direction(singlePoint));
  }
  EXPECT_EQ(allocations.count(), 0U);
  EXPECT_EQ(sum, 0);
}

TEST(Direction, OfAMovedFromLineIsThatOfALineAtTheOrigin) {
  CounterLine source("L", {1.0, 2.0}, {3.0, 4.0}, nullptr, Side::LEFT);
  const CounterLine moved(std::move(source));
  const LogCapture log;
  source.setName("gone");  // NOLINT(bugprone-use-after-move): what is left is under test
  EXPECT_EQ(source.direction(Point(1.0, 2.0)), Side::ON);
  EXPECT_EQ(source.direction(Point(nan, 0.0)), Side::RIGHT);
  EXPECT_EQ(log.texts(LogLevel::Trace), (Texts{"direction::'gone':1:2::::0:0:0:0:--:0:==:2**0",
                                               "direction::'gone':nan:0::::0:0:0:0:--:-1:==:1**nan"}));
}

}  // namespace
}  // namespace orvantis::filter::detection
