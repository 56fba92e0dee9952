#include <array>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "session/SiteEstimate.h"

namespace orvantis::toolkit {
namespace {

using Row = std::array<float, 3>;

void add(SiteEstimate& estimate, const std::vector<Row>& rows) {
  estimate.add(filter::classify::PointsView<float>::interleaved(rows.empty() ? nullptr : rows[0].data(),
                                                                sizeof(Row), rows.size()));
}

TEST(SiteEstimate, TheGroundIsWhereMostPointsAreAndTheExtentLeavesOutTheFewFarOnes) {
  std::vector<Row> rows;
  for (int i = 0; i <= 100; ++i) {
    rows.push_back({static_cast<float>(i), static_cast<float>(-i), -1.75F});  // ground
  }
  for (int i = 0; i < 50; ++i) {
    rows.push_back({50.0F, -50.0F, 0.1F * static_cast<float>(i)});  // a wall
  }
  rows.push_back({5000.0F, 5000.0F, 90.0F});
  SiteEstimate estimate;
  add(estimate, rows);
  const auto site = estimate.site();
  ASSERT_TRUE(site);
  EXPECT_EQ(site->ground, -1.75);
  EXPECT_EQ(site->low.x(), 7.0);
  EXPECT_EQ(site->high.x(), 93.0);
  EXPECT_EQ(site->low.y(), -93.0);
  EXPECT_EQ(site->high.y(), -7.0);
}

TEST(SiteEstimate, FramesAddUp) {
  SiteEstimate estimate;
  add(estimate, {{1.0F, 1.0F, 5.0F}});
  add(estimate, {{3.0F, 3.0F, 2.0F}, {3.0F, 3.0F, 2.0F}});
  EXPECT_EQ(estimate.site()->ground, 2.0);
  EXPECT_EQ(estimate.site()->low.x(), 1.0);
}

TEST(SiteEstimate, NoReturnsAreNotPoints) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float inf = std::numeric_limits<float>::infinity();
  SiteEstimate estimate;
  EXPECT_FALSE(estimate.site());
  add(estimate, {{nan, 1.0F, 1.0F}, {1.0F, inf, 1.0F}, {1.0F, 1.0F, -inf}, {0.0F, 0.0F, 0.0F}});
  EXPECT_FALSE(estimate.site());
  add(estimate, {{0.0F, 0.0F, 1.0F}});
  EXPECT_EQ(estimate.site()->ground, 1.0);
}

}  // namespace
}  // namespace orvantis::toolkit
