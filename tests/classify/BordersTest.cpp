#include <cmath>
#include <optional>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>

#include "classify/Borders.h"

namespace orvantis::testing {
namespace {

using filter::classify::Border;
using filter::classify::Bounds;
using filter::classify::Curve;
using filter::classify::Margins;
using filter::classify::Outline;
using filter::classify::outlineOf;
using filter::classify::Patch;
using namespace filter::detection;

// A zone that is 100 m x 60 m large about the origin.
class Bands : public ::testing::Test {
 protected:
  static Bounds makeZone() {
    Bounds zone;
    zone.include(-50.0, -30.0);
    zone.include(50.0, 30.0);
    return zone;
  }

  static Patch patchOver(const Bounds& zone, double cell) {
    Patch patch;
    patch.x0 = zone.minX - 3.0 * cell;
    patch.y0 = zone.minY - 3.0 * cell;
    patch.cell = cell;
    patch.columns = static_cast<int>((zone.maxX - zone.minX) / cell) + 6;
    patch.rows = static_cast<int>((zone.maxY - zone.minY) / cell) + 6;
    patch.slack = 0.001;
    return patch;
  }

  Curve curveOf(const Zone& shape, std::size_t piece, double scale = 1.0) const {
    const std::optional<Outline> outline = outlineOf(shape);
    return Margins(zone_, patch_, scale).curveOf(outline->pieces.at(piece));
  }

  // What rounding to float may take from a sum of terms as large as these.
  static double lost(double terms) { return 1.0625 * 0x1p-21 * terms; }

  const Bounds zone_ = makeZone();
  const Patch patch_ = patchOver(zone_, 0.25);
  const double u_ = 50.0 + 2.0 * 0.25;  // no point of a marked cell is farther from the middle
  const double v_ = 30.0 + 2.0 * 0.25;
};

TEST_F(Bands, AreCountedFromTheMiddleOfTheZone) {
  Bounds far;
  far.include(4.5e5 - 1.0, 5.0e6 - 3.0);
  far.include(4.5e5 + 1.0, 5.0e6 + 3.0);
  const Margins margins(far, patchOver(far, 2.0), 1.0);
  const Curve curve =
      margins.curveOf({.kind = Border::Kind::Edge, .x1 = 4.5e5, .y1 = 5.0e6, .x2 = 4.5e5 + 1.0, .y2 = 5.0e6});
  EXPECT_EQ(curve.x, 4.5e5F);
  EXPECT_EQ(curve.y, 5.0e6F);
  EXPECT_EQ(curve.c, 0.0F);
}

TEST_F(Bands, OfAnEdgeIsWhatFloatsMayLose) {
  // 3 m to the right and 4 m up: 5 m long, and 2 m from the middle.
  const Polygon triangle("p", {{-0.1, 2.3}, {2.9, 6.3}, {-5.0, 6.0}});
  const Curve curve = curveOf(triangle, 0);
  const double distance = std::abs(-0.8 * -0.1 + 0.6 * 2.3);
  const double band = lost(0.8 * u_ + 0.6 * v_ + distance);
  EXPECT_EQ(curve.q, 0.0F);
  EXPECT_NEAR(curve.a * band, -0.8, 1.0e-5);
  EXPECT_NEAR(curve.b * band, 0.6, 1.0e-5);
  EXPECT_NEAR(curve.c * band, -distance, 1.0e-5);
  EXPECT_GT(curve(1.4F, 4.31F), 1.0F);   // 6 mm to its left
  EXPECT_LT(curve(1.4F, 4.29F), -1.0F);  // and to its right
}

TEST_F(Bands, OfAnArcIsWhatFloatsMayLose) {
  const Sector sector("s", 0.0, 1.0, 10.0, Point(20.0, -10.0));
  const Curve curve = curveOf(sector, 2);
  const double band = lost(u_ * u_ + v_ * v_ + 40.0 * u_ + 20.0 * v_ + 400.0);
  EXPECT_NEAR(curve.q * band, 1.0, 1.0e-5);
  EXPECT_NEAR(curve.a * band, -40.0, 1.0e-3);
  EXPECT_NEAR(curve.b * band, 20.0, 1.0e-3);
  EXPECT_NEAR(curve.c * band, 400.0, 1.0e-2);
  EXPECT_GT(curve(30.01F, -10.0F), 1.0F);
  EXPECT_LT(curve(29.99F, -10.0F), -1.0F);
}

TEST_F(Bands, OfABearingLeadsFromTheOriginToTheArc) {
  const Sector sector("s", 0.0, 1.0, 10.0, Point(20.0, -10.0));
  const Curve curve = curveOf(sector, 0);
  const double band = lost(v_ + 10.0);
  EXPECT_EQ(curve.q, 0.0F);
  EXPECT_NEAR(curve.a * band, 0.0, 1.0e-5);
  EXPECT_NEAR(curve.b * band, 1.0, 1.0e-5);
  EXPECT_NEAR(curve.c * band, 10.0, 1.0e-4);
}

// What the point test itself takes for equal is little beside what floats lose, but for short edges.
TEST_F(Bands, OfAShortEdgeIsWiderByItsDeterminant) {
  const auto bandOf = [&](double length) {
    const Polygon sliver("p", {{0.0, 0.0}, {length, 0.0}, {0.0, 1.0}});
    return 1.0 / static_cast<double>(curveOf(sliver, 0).b);
  };
  const double reach = 2.0 * (100.0 + 2.0 * 0.25);
  const double determinant = 0x1p-52 * (reach + 16.0 * reach * reach);
  for (const double length : {1.0e-6, 1.0e-8, 1.0e-10}) {
    EXPECT_NEAR(bandOf(length) / (lost(v_) + 2.0 * determinant / length), 1.0, 1.0e-5) << length;
  }
}

TEST_F(Bands, AreAlmostNothingWithoutMargins) {
  const Polygon triangle("p", {{-0.1, 2.3}, {2.9, 6.3}, {-5.0, 6.0}});
  EXPECT_NEAR(static_cast<double>(curveOf(triangle, 0, 0.0).b) * 1.0e-20, 0.6, 1.0e-6);
}

TEST(Outline, OfARingHasAnEdgeForEachPairOfVerticesThatDiffer) {
  const auto ring = outlineOf(Polygon("p", {{1.0, 2.0}, {4.0, 2.0}, {4.0, 2.0}, {3.0, 7.0}, {1.0, 2.0}}));
  ASSERT_EQ(ring->pieces.size(), 3U);
  EXPECT_EQ(ring->pieces[1].kind, Border::Kind::Edge);
  EXPECT_EQ(ring->pieces[1].x1, 4.0);
  EXPECT_EQ(ring->pieces[1].y1, 2.0);
  EXPECT_EQ(ring->pieces[1].x2, 3.0);
  EXPECT_EQ(ring->pieces[1].y2, 7.0);
  EXPECT_EQ(ring->bounds.minX, 1.0);
  EXPECT_EQ(ring->bounds.minY, 2.0);
  EXPECT_EQ(ring->bounds.maxX, 4.0);
  EXPECT_EQ(ring->bounds.maxY, 7.0);
  EXPECT_TRUE(outlineOf(Polygon("p", {{1.0, 2.0}, {4.0, 2.0}}))->pieces.empty());
}

TEST(Outline, OfASectorHasItsBearingsAndItsArc) {
  const auto sector = outlineOf(Sector("s", 3.0, -3.0, 2.0, Point(5.0, 6.0)));
  ASSERT_EQ(sector->pieces.size(), 3U);
  EXPECT_EQ(sector->pieces[0].kind, Border::Kind::Bearing);
  EXPECT_EQ(sector->pieces[1].kind, Border::Kind::Bearing);
  const Border& arc = sector->pieces[2];
  EXPECT_EQ(arc.kind, Border::Kind::Arc);
  EXPECT_EQ(arc.x1, 5.0);
  EXPECT_EQ(arc.y1, 6.0);
  EXPECT_EQ(arc.radius, 2.0);
  EXPECT_EQ(arc.beginX, std::cos(3.0));
  EXPECT_EQ(arc.beginY, std::sin(3.0));
  EXPECT_EQ(arc.endX, std::cos(-3.0));
  EXPECT_EQ(arc.endY, std::sin(-3.0));
  EXPECT_NEAR(arc.opening, 2.0 * std::acos(-1.0) - 6.0, 1.0e-12);
  // It opens to the left of its origin.
  EXPECT_EQ(sector->bounds.minX, 3.0);
  EXPECT_EQ(sector->bounds.maxX, 5.0);
  // A whole disc has no bearings.
  EXPECT_EQ(outlineOf(Sector("s", 0.5, 0.5, 2.0))->pieces.size(), 1U);
}

}  // namespace
}  // namespace orvantis::testing
