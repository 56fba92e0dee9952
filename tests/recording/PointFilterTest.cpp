#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "FrameFiles.h"
#include "recording/PointFilter.h"
#include "recording/PointStatistics.h"

namespace orvantis::toolkit {
namespace {

using filter::classify::PointsView;
using testing::Point;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

Points viewOf(const std::vector<double>& xyz) {
  return PointsView<double>::interleaved(xyz.data(), 24, xyz.size() / 3);
}

std::vector<Point> kept(const PointLimits& limits, const std::vector<double>& xyz, DroppedPoints& dropped) {
  PointFilter filter(limits);
  return testing::pointsOf(filter.keep(viewOf(xyz), dropped));
}

TEST(PointFilter, WithoutLimitsEveryPointStaysWhereItIs) {
  const std::vector<double> xyz = {0, 0, 0, 1, 2, 3};
  DroppedPoints dropped;
  PointFilter filter({});
  EXPECT_EQ(std::get<PointsView<double>>(filter.keep(viewOf(xyz), dropped)).x, xyz.data());
  EXPECT_TRUE(PointLimits().dropsNothing());
  EXPECT_FALSE((PointLimits{true}).dropsNothing());
  EXPECT_FALSE((PointLimits{false, 0.1}).dropsNothing());
  EXPECT_FALSE((PointLimits{false, 0, 10}).dropsNothing());
}

TEST(PointFilter, AFrameThatLosesNothingIsNotCopied) {
  const std::vector<double> xyz = {1, 0, 0, 1, 2, 3};
  DroppedPoints dropped;
  PointFilter filter({true, 0.5, 100});
  EXPECT_EQ(std::get<PointsView<double>>(filter.keep(viewOf(xyz), dropped)).x, xyz.data());
  EXPECT_EQ(dropped.atOrigin + dropped.tooNear + dropped.tooFar, 0U);
}

TEST(PointFilter, PointsExactlyAtTheOriginAreDropped) {
  DroppedPoints dropped;
  EXPECT_EQ(kept({true}, {1, 2, 3, 0, 0, 0, -0.0, 0, -0.0, 1e-300, 0, 0, 4, 5, 6}, dropped),
            (std::vector<Point>{{1, 2, 3}, {1e-300, 0, 0}, {4, 5, 6}}));
  EXPECT_EQ(dropped.atOrigin, 2U);
  EXPECT_EQ(dropped.tooNear, 0U);
}

TEST(PointFilter, RangesAreInSpaceAndHoldTheirEnds) {
  DroppedPoints dropped;
  EXPECT_EQ(kept({false, 3, 7}, {2, 2, 1, 2, 2, 0.999, 6, 3, 2, 6, 3, -2.001, 0, 0, 0}, dropped),
            (std::vector<Point>{{2, 2, 1}, {6, 3, 2}}));
  EXPECT_EQ(dropped.tooNear, 2U);
  EXPECT_EQ(dropped.tooFar, 1U);
  EXPECT_EQ(dropped.atOrigin, 0U);
}

TEST(PointFilter, EachPointIsCountedOnce) {
  DroppedPoints dropped{1, 2, 3};
  kept({true, 1, 2}, {0, 0, 0, 0.5, 0, 0, 1.5, 0, 0, 5, 0, 0, 6, 0, 0}, dropped);
  EXPECT_EQ(dropped.atOrigin, 2U);
  EXPECT_EQ(dropped.tooNear, 3U);
  EXPECT_EQ(dropped.tooFar, 5U);
}

TEST(PointFilter, WhatIsNotFiniteStays) {
  DroppedPoints dropped;
  EXPECT_EQ(kept({true, 1, 2}, {nan, 0, 0, 0, infinity, 0, 0, 0, -infinity, 1e200, 0, 0}, dropped).size(),
            3U);
  EXPECT_EQ(dropped.tooFar, 1U);
  EXPECT_EQ(dropped.tooNear + dropped.atOrigin, 0U);
}

TEST(PointFilter, FloatsStayFloats) {
  const std::vector<float> xyz = {0, 0, 0, 1, 2, 3};
  PointFilter filter({true});
  DroppedPoints dropped;
  const Points points = filter.keep(PointsView<float>::interleaved(xyz.data(), 12, 2), dropped);
  EXPECT_TRUE(testing::areFloats(points));
  EXPECT_EQ(testing::pointsOf(points), (std::vector<Point>{{1, 2, 3}}));
}

TEST(PointFilter, CountsPointsAtTheOrigin) {
  EXPECT_EQ(countAtOrigin(viewOf({0, 0, 0, -0.0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, nan, 0, 0})), 2U);
  EXPECT_EQ(countAtOrigin(Points()), 0U);
}

// The distances of three and four values are counted by code of their own. One point far behind the others
// is not where another distance would look.
template <typename Real>
void expectCountedAtEveryDistance() {
  for (std::size_t values = 3; values <= 6; ++values) {
    for (const std::size_t at : {std::size_t{0}, std::size_t{1000}, std::size_t{2500}}) {
      std::vector<Real> records(values * 2501, Real{1});
      std::fill_n(records.begin() + static_cast<std::ptrdiff_t>(values * at), 3, Real{0});
      const auto view = PointsView<Real>::interleaved(records.data(), values * sizeof(Real), 2501);
      EXPECT_EQ(countAtOrigin(view), 1U) << values << " values, point " << at;
    }
  }
}

TEST(PointFilter, CountsPointsAtTheOriginAtEveryDistance) {
  expectCountedAtEveryDistance<float>();
  expectCountedAtEveryDistance<double>();
}

TEST(PointStatistics, TellWhatThePointsAre) {
  PointStatistics statistics;
  EXPECT_EQ(statistics.extents(), std::nullopt);
  EXPECT_EQ(statistics.ground(), std::nullopt);
  statistics.add(viewOf({1, -2, 3, 5, nan, 9, 0, 0, 0, 4, 8, -1, infinity, 9, 9}));
  statistics.add(viewOf({-7, 0, 2}));
  EXPECT_EQ(statistics.points(), 6U);
  EXPECT_EQ(statistics.noReturns(), 2U);
  EXPECT_EQ(statistics.atOrigin(), 1U);
  ASSERT_TRUE(statistics.extents());
  const auto& [x, y, z] = *statistics.extents();
  EXPECT_EQ(x.least, -7);
  EXPECT_EQ(x.greatest, 4);
  EXPECT_EQ(y.least, -2);
  EXPECT_EQ(y.greatest, 8);
  EXPECT_EQ(z.least, -1);
  EXPECT_EQ(z.greatest, 3);
}

TEST(PointStatistics, GroundIsTheFullestHeight) {
  const auto ground = [](const std::vector<double>& heights) {
    std::vector<double> xyz;
    for (const double height : heights) {
      xyz.insert(xyz.end(), {1.0, 1.0, height});
    }
    PointStatistics statistics;
    statistics.add(viewOf(xyz));
    return statistics.ground();
  };
  EXPECT_EQ(ground({-1.72, -1.68, 0.3, 0.5}), -1.7);
  EXPECT_EQ(ground({0.04, -0.04, 0.06}), 0.0);
  EXPECT_EQ(ground({5, 2, 3}), 2.0);  // the lowest of several
  EXPECT_EQ(ground({-1000, 10000.1, 10000.1}), -1000.0);
  EXPECT_EQ(ground({-1000.1, 10000}), 10000.0);
  EXPECT_EQ(ground({1e300, -1e300}), std::nullopt);
}

TEST(PointStatistics, PointsAtTheOriginAreNotGround) {
  PointStatistics statistics;
  statistics.add(viewOf({0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, -2, 2, 0, 0}));
  EXPECT_EQ(statistics.ground(), -2.0);
}

// Against a loop that does one thing at a time.
TEST(PointStatistics, AgreeWithCountingByHand) {
  std::mt19937 random(14);
  std::vector<float> xyz(3000);
  for (float& value : xyz) {
    const auto dice = random() % 20;
    value = dice == 0   ? std::numeric_limits<float>::quiet_NaN()
            : dice < 12 ? 0.0F
                        : static_cast<float>(random() % 1000) / 100.0F - 5.0F;
  }
  PointStatistics statistics;
  statistics.add(PointsView<float>::interleaved(xyz.data(), 12, 1000));
  std::size_t noReturns = 0;
  std::size_t atOrigin = 0;
  for (std::size_t i = 0; i < 3000; i += 3) {
    noReturns += std::isnan(xyz[i]) || std::isnan(xyz[i + 1]) || std::isnan(xyz[i + 2]) ? 1U : 0U;
    atOrigin += xyz[i] == 0 && xyz[i + 1] == 0 && xyz[i + 2] == 0 ? 1U : 0U;
  }
  EXPECT_EQ(statistics.noReturns(), noReturns);
  EXPECT_EQ(statistics.atOrigin(), atOrigin);
  EXPECT_GT(atOrigin, 100U);
}

}  // namespace
}  // namespace orvantis::toolkit
