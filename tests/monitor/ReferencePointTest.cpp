#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <filter/monitor/TrackedObject.h>

#include "Frames.h"

namespace orvantis::filter::monitor::testing {
namespace {

void expectAt(const std::optional<PlanarPoint>& point, double x, double y) {
  ASSERT_TRUE(point.has_value());
  EXPECT_EQ(point->x(), x);
  EXPECT_EQ(point->y(), y);
}

TEST(ReferencePoint, OfABoxIsTheCentreThatItWasGiven) {
  for (double heading = -4.0; heading < 4.0; heading += 0.01) {
    expectAt(referencePoint(core::State(0.1, -0.7, 4.5, 1.75, heading)), 0.1, -0.7);
  }
  expectAt(referencePoint(core::State(1e9, -0x1p-1000, 0.0, 0.0, 0.3)), 1e9, -0x1p-1000);
}

TEST(ReferencePoint, OfAFootprintGivenAsAPolygonIsItsCentroid) {
  const PlanarPolygon triangle = ring({{0, 0}, {0, 3}, {3, 0}});
  expectAt(referencePoint(triangle), 1.0, 1.0);
  expectAt(referencePoint(core::State(triangle)), 1.0, 1.0);
  expectAt(referencePoint(core::State(3.0, -7.0, 4.0, 2.0, 0.0).getBoostPolygon()), 3.0, -7.0);
  const auto turned = referencePoint(core::State(3.0, -7.0, 4.0, 2.0, 0.7).getBoostPolygon());
  ASSERT_TRUE(turned.has_value());
  EXPECT_NEAR(turned->x(), 3.0, 1e-15);
  EXPECT_NEAR(turned->y(), -7.0, 1e-15);
}

TEST(ReferencePoint, IsTheCentroidOfTheRegionWhateverTheRingLooksLike) {
  // An L of three unit squares: its centroid is the mean of theirs.
  const std::vector<PlanarPoint> el = {{0, 0}, {0, 2}, {1, 2}, {1, 1}, {2, 1}, {2, 0}};
  const std::vector<PlanarPoint> reversed(el.rbegin(), el.rend());
  std::vector<PlanarPoint> closed = el;
  closed.push_back(el.front());
  std::vector<PlanarPoint> crowded = el;  // more vertices on one edge do not pull it
  crowded.insert(crowded.begin() + 1, {{0, 0.5}, {0, 1}, {0, 1.5}});
  for (const auto& vertices : {el, reversed, closed, crowded}) {
    const auto point = referencePoint(ring(vertices));
    ASSERT_TRUE(point.has_value());
    EXPECT_DOUBLE_EQ(point->x(), 5.0 / 6.0);
    EXPECT_DOUBLE_EQ(point->y(), 5.0 / 6.0);
  }
}

TEST(ReferencePoint, HolesDoNotMoveIt) {
  PlanarPolygon footprint = ring({{0, 0}, {0, 4}, {4, 4}, {4, 0}});
  footprint.inners().push_back(ring({{1, 1}, {2, 1}, {2, 2}, {1, 2}}).outer());
  expectAt(referencePoint(footprint), 2.0, 2.0);
}

TEST(ReferencePoint, WithoutAreaItIsTheMiddleOfTheBoundingBox) {
  expectAt(referencePoint(core::State(3.0, -7.0, 0.0, 0.0, 0.3).getBoostPolygon()), 3.0, -7.0);
  expectAt(referencePoint(ring({{1, 1}})), 1.0, 1.0);
  expectAt(referencePoint(ring({{1, 1}, {3, 5}})), 2.0, 3.0);
  expectAt(referencePoint(ring({{1, 1}, {3, 5}, {2, 3}, {3, 5}})), 2.0, 3.0);
}

TEST(ReferencePoint, NeverLiesOutsideTheBoundingBox) {
  // The two halves of the bow almost cancel, which throws the quotient far off.
  expectAt(referencePoint(ring({{0, 0}, {4, 4}, {4, 0}, {0, 4.25}})), 0.0, 2.75);
}

TEST(ReferencePoint, KeepsItsDigitsFarFromTheOrigin) {
  expectAt(referencePoint(core::State(5e6, 6e6, 2.0, 1.0, 0.0).getBoostPolygon()), 5e6, 6e6);
}

TEST(ReferencePoint, ThereIsNoneWithoutAPlace) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double inf = std::numeric_limits<double>::infinity();
  EXPECT_EQ(referencePoint(PlanarPolygon()), std::nullopt);
  EXPECT_EQ(referencePoint(ring({{0, 0}, {0, nan}, {1, 0}})), std::nullopt);
  EXPECT_EQ(referencePoint(ring({{0, 0}, {0, 1}, {-inf, 0}})), std::nullopt);
  EXPECT_EQ(referencePoint(core::State(ring({{0, 0}, {0, nan}, {1, 0}}))), std::nullopt);
  // The centre of a box is not a place when its corners are not.
  EXPECT_EQ(referencePoint(core::State(0.0, 0.0, inf, 1.0, 0.0)), std::nullopt);
  EXPECT_EQ(referencePoint(core::State(0.0, 0.0, 1.0, 1.0, nan)), std::nullopt);
  EXPECT_EQ(referencePoint(core::State(nan, 0.0, 1.0, 1.0, 0.0)), std::nullopt);
  core::State box(0.0, 0.0, 1.0, 1.0, 0.0);
  const core::State taken = std::move(box);
  EXPECT_EQ(referencePoint(box), std::nullopt);  // NOLINT(bugprone-use-after-move)
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
