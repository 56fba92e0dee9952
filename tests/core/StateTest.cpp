#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <core/State.h>

namespace orvantis::core {
namespace {

using Coordinates = std::vector<std::pair<double, double>>;

PlanarPolygon::ring_type ring(const Coordinates& vertices) {
  PlanarPolygon::ring_type result;
  for (const auto& [x, y] : vertices) {
    result.emplace_back(x, y);
  }
  return result;
}

PlanarPolygon polygon(const Coordinates& vertices) {
  PlanarPolygon result;
  result.outer() = ring(vertices);
  return result;
}

Coordinates coordinates(const PlanarPolygon::ring_type& ring) {
  Coordinates result;
  for (const PlanarPoint& vertex : ring) {
    result.emplace_back(vertex.x(), vertex.y());
  }
  return result;
}

// Twice the signed area, positive for a clockwise ring.
double doubledArea(const Coordinates& vertices) {
  double sum = 0;
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    const auto& [x, y] = vertices[i];
    const auto& [nextX, nextY] = vertices[(i + 1) % vertices.size()];
    sum += (y - nextY) * (x + nextX);
  }
  return sum;
}

void expectNear(const Coordinates& actual, const Coordinates& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    EXPECT_NEAR(actual[i].first, expected[i].first, 1e-12) << i;
    EXPECT_NEAR(actual[i].second, expected[i].second, 1e-12) << i;
  }
}

TEST(State, KeepsAClockwiseClosedFootprint) {
  const Coordinates square = {{0, 0}, {0, 1}, {1, 1}, {1, 0}, {0, 0}};
  EXPECT_EQ(coordinates(State(polygon(square)).getBoostPolygon().outer()), square);
}

TEST(State, ClosesAndTurnsAFootprintClockwise) {
  EXPECT_EQ(coordinates(State(polygon({{0, 0}, {0, 1}, {1, 0}})).getBoostPolygon().outer()),
            (Coordinates{{0, 0}, {0, 1}, {1, 0}, {0, 0}}));
  const Coordinates turned =
      coordinates(State(polygon({{0, 0}, {1, 0}, {1, 1}, {0, 1}})).getBoostPolygon().outer());
  ASSERT_EQ(turned.size(), 5U);
  EXPECT_EQ(turned.front(), turned.back());
  EXPECT_EQ(doubledArea(turned), 2.0);
}

TEST(State, TurnsHolesCounterclockwise) {
  PlanarPolygon footprint = polygon({{0, 0}, {0, 9}, {9, 9}, {9, 0}});
  footprint.inners().push_back(ring({{1, 1}, {1, 2}, {2, 2}}));
  const PlanarPolygon kept = State(footprint).getBoostPolygon();
  ASSERT_EQ(kept.inners().size(), 1U);
  const Coordinates hole = coordinates(kept.inners()[0]);
  ASSERT_EQ(hole.size(), 4U);
  EXPECT_EQ(hole.front(), hole.back());
  EXPECT_EQ(doubledArea(hole), -1.0);
}

TEST(State, AFootprintMayBeEmpty) {
  EXPECT_TRUE(State(PlanarPolygon()).getBoostPolygon().outer().empty());
}

TEST(State, FewVerticesAreKept) {
  EXPECT_EQ(coordinates(State(polygon({{1, 2}})).getBoostPolygon().outer()).front(),
            (std::pair<double, double>{1, 2}));
  EXPECT_GE(State(polygon({{1, 2}, {3, 4}})).getBoostPolygon().outer().size(), 2U);
}

TEST(State, ABoxAheadHasItsLengthAlongX) {
  const Coordinates box = coordinates(State(10, 20, 4, 2, 0).getBoostPolygon().outer());
  expectNear(box, {{12, 21}, {12, 19}, {8, 19}, {8, 21}, {12, 21}});
  EXPECT_NEAR(doubledArea(box), 16, 1e-12);
}

TEST(State, ABoxTurnsCounterclockwiseWithItsHeading) {
  expectNear(coordinates(State(10, 20, 4, 2, std::numbers::pi / 2).getBoostPolygon().outer()),
             {{9, 22}, {11, 22}, {11, 18}, {9, 18}, {9, 22}});
  const double diagonal = std::sqrt(0.5);
  const Coordinates turned = coordinates(State(0, 0, 2, 0.0, std::numbers::pi / 4).getBoostPolygon().outer());
  EXPECT_NEAR(turned[0].first, diagonal, 1e-12);
  EXPECT_NEAR(turned[0].second, diagonal, 1e-12);
}

TEST(State, EveryBoxIsClockwiseAndClosed) {
  for (const double length : {4.0, -4.0}) {
    for (const double width : {2.0, -2.0}) {
      for (double heading = -7; heading < 7; heading += 0.37) {
        const Coordinates box = coordinates(State(3, -5, length, width, heading).getBoostPolygon().outer());
        ASSERT_EQ(box.size(), 5U);
        EXPECT_EQ(box.front(), box.back());
        EXPECT_NEAR(doubledArea(box), 16, 1e-9) << length << " " << width << " " << heading;
      }
    }
  }
}

TEST(State, NumbersThatAreNotFiniteGiveABoxAllTheSame) {
  for (const double bad :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_GE(State(bad, 0, 4, 2, 0).getBoostPolygon().outer().size(), 4U);
    EXPECT_GE(State(0, 0, bad, 2, 0).getBoostPolygon().outer().size(), 4U);
    EXPECT_GE(State(0, 0, 4, 2, bad).getBoostPolygon().outer().size(), 4U);
  }
}

TEST(State, ABoxKeepsTheCentreThatItWasBuiltFrom) {
  // Corners of a turned box are rounded, so that none of their means is this point again.
  const State box(0.1, -0.7, 4.5, 1.75, 0.09);
  ASSERT_TRUE(box.centre().has_value());
  EXPECT_EQ(box.centre()->x(), 0.1);
  EXPECT_EQ(box.centre()->y(), -0.7);
}

TEST(State, AFootprintGivenAsAPolygonHasNoCentre) {
  EXPECT_FALSE(State(polygon({{0, 0}, {0, 1}, {1, 1}, {1, 0}})).centre().has_value());
  EXPECT_FALSE(State(State(1, 2, 3, 4, 0).getBoostPolygon()).centre().has_value());
}

TEST(State, CopyingAndMovingKeepCentreAndFootprint) {
  const State box(1, 2, 4, 2, 0.3);
  const Coordinates corners = coordinates(box.polygon().outer());
  State copy(polygon({{0, 0}, {0, 1}, {1, 0}}));
  copy = box;
  EXPECT_EQ(copy.centre()->y(), 2);
  State moved(std::move(copy));
  EXPECT_EQ(moved.centre()->y(), 2);
  EXPECT_EQ(coordinates(moved.polygon().outer()), corners);
  EXPECT_TRUE(copy.polygon().outer().empty());  // NOLINT(bugprone-use-after-move)
  moved = State(polygon({{0, 0}, {0, 1}, {1, 0}}));
  EXPECT_FALSE(moved.centre().has_value());
}

TEST(State, ThePolygonIsSeenWithoutACopy) {
  const State box(1, 2, 4, 2, 0.3);
  EXPECT_EQ(&box.polygon(), &box.polygon());
  EXPECT_EQ(coordinates(box.polygon().outer()), coordinates(box.getBoostPolygon().outer()));
}

TEST(State, CopiesAreIndependentAndTheFootprintIsHandedOutAsACopy) {
  const State state(polygon({{0, 0}, {0, 1}, {1, 0}}));
  PlanarPolygon footprint = state.getBoostPolygon();
  footprint.clear();
  EXPECT_EQ(state.getBoostPolygon().outer().size(), 4U);
  State copy = state;
  copy = State(PlanarPolygon());
  EXPECT_EQ(state.getBoostPolygon().outer().size(), 4U);
}

// Headings whose sine or cosine C libraries round in different ways.
TEST(State, CornersAreTheSameOnEveryMachine) {
  const PlanarPolygon first = State(0, 0, 2, 0, 0.11808897718993634).getBoostPolygon();
  EXPECT_EQ(first.outer()[0].x(), 0x1.fc6f295dbe385p-1);
  EXPECT_EQ(first.outer()[0].y(), 0x1.e291ad601bf7fp-4);
  const PlanarPolygon second = State(0, 0, 2, 0, 0.2853962392861128).getBoostPolygon();
  EXPECT_EQ(second.outer()[0].x(), 0x1.eb4a28fc9d563p-1);
  EXPECT_EQ(second.outer()[0].y(), 0x1.204b6a344affbp-2);
}

}  // namespace
}  // namespace orvantis::core
