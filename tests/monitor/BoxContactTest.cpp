#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include "monitor/BoxContact.h"

namespace orvantis::filter::monitor {
namespace {

using core::PlanarPoint;
using Vertices = std::vector<PlanarPoint>;

const Vertices square = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};
// A square of 10 with a notch from above, between 4 and 6, down to 2.
const Vertices notched = {{0, 0}, {0, 10}, {4, 10}, {4, 2}, {6, 2}, {6, 10}, {10, 10}, {10, 0}};

std::optional<bool> answer(const Vertices& ring, const core::State& box) {
  const auto contact = BoxContact::of(ring);
  return contact ? contact->sharesAnyPoint(*boxOf(box)) : std::nullopt;
}

TEST(BoxContacts, TellApartInsideAcrossAndAround) {
  EXPECT_EQ(answer(square, core::State(5, 5, 2, 1, 0.3)), true);          // inside
  EXPECT_EQ(answer(square, core::State(10, 5, 2, 1, 0.3)), true);         // over the border
  EXPECT_EQ(answer(square, core::State(5, 5, 40, 40, 0.3)), true);        // around it
  EXPECT_EQ(answer(square, core::State(5, 5, 40, 1, 0.3)), true);         // across it
  EXPECT_EQ(answer(square, core::State(12, 5, 2, 1, 0.3)), false);        // beside it
  EXPECT_EQ(answer(square, core::State(12, 12, 5.5, 1, -0.785)), false);  // its corner is in the box's bounds
}

TEST(BoxContacts, TellANotchFromTheInside) {
  EXPECT_EQ(answer(notched, core::State(5, 5, 1, 1, 0.1)), false);
  EXPECT_EQ(answer(notched, core::State(5, 1, 1, 1, 0.1)), true);
  EXPECT_EQ(answer(notched, core::State(5, 5, 2.5, 1, 0.0)), true);
  EXPECT_EQ(answer(notched, core::State(5, 12, 1, 1, 0.0)), false);
}

TEST(BoxContacts, DoNotDependOnTheWindingOrARepeatedVertex) {
  const Vertices reversed(notched.rbegin(), notched.rend());
  Vertices closed = notched;
  closed.push_back(notched.front());
  for (const Vertices& ring : {notched, reversed, closed}) {
    EXPECT_EQ(answer(ring, core::State(5, 1, 1, 1, 0.1)), true);
    EXPECT_EQ(answer(ring, core::State(5, 5, 1, 1, 0.1)), false);
    EXPECT_EQ(answer(ring, core::State(8, 11, 1, 1, 0.1)), false);
  }
}

TEST(BoxContacts, SayNothingWithinTheMargin) {
  for (const double gap : {0.0, 1e-9, -1e-9}) {
    EXPECT_EQ(answer(square, core::State(11 + gap, 5, 2, 1, 0)), std::nullopt) << gap;
    EXPECT_EQ(answer(square, core::State(5, -1 - gap, 1, 2, 0)), std::nullopt) << gap;
  }
  EXPECT_EQ(answer(square, core::State(11 + 1e-6, 5, 2, 1, 0)), false);
  EXPECT_EQ(answer(square, core::State(11 - 1e-6, 5, 2, 1, 0)), true);
  EXPECT_EQ(answer(square, core::State(5, -1 - 1e-6, 1, 2, 0)), false);
  // Corner to corner.
  const double half = std::sqrt(0.5);
  EXPECT_EQ(answer(square, core::State(-half, -half, 2, 2, std::numbers::pi / 4)), std::nullopt);
  EXPECT_EQ(answer(square, core::State(-half - 1e-6, -half, 2, 2, std::numbers::pi / 4)), false);
  EXPECT_EQ(answer(square, core::State(-half + 1e-6, -half, 2, 2, std::numbers::pi / 4)), true);
}

TEST(BoxContacts, SayNothingOfThinBoxesOrBeyondAllSense) {
  EXPECT_EQ(answer(square, core::State(5, 5, 0, 0, 0)), std::nullopt);
  EXPECT_EQ(answer(square, core::State(50, 5, 2, 0, 0)), std::nullopt);
  EXPECT_EQ(answer(square, core::State(50, 5, 0, 2, 0)), std::nullopt);
  EXPECT_EQ(answer(square, core::State(1e150, 5, 2, 1, 0)), std::nullopt);
}

TEST(BoxContacts, NeedARingThatIsPlain) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double inf = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(BoxContact::of(notched).has_value());
  EXPECT_TRUE(BoxContact::of({{0, 0}, {1, 2}, {3, 0}}).has_value());
  EXPECT_FALSE(BoxContact::of({}).has_value());
  EXPECT_FALSE(BoxContact::of({{0, 0}}).has_value());
  EXPECT_FALSE(BoxContact::of({{0, 0}, {1, 2}}).has_value());
  EXPECT_FALSE(BoxContact::of({{0, 0}, {1, 2}, {0, 0}}).has_value());
  EXPECT_FALSE(BoxContact::of({{0, 0}, {nan, 2}, {3, 0}}).has_value());
  EXPECT_FALSE(BoxContact::of({{0, 0}, {1, nan}, {3, 0}}).has_value());
  EXPECT_FALSE(BoxContact::of({{0, 0}, {1, inf}, {3, 0}}).has_value());
  EXPECT_FALSE(BoxContact::of({{0, 0}, {1e150, 2}, {3, 0}}).has_value());
  EXPECT_FALSE(BoxContact::of({{0, 0}, {4, 4}, {4, 0}, {0, 4}}).has_value());          // a bow
  EXPECT_FALSE(BoxContact::of({{0, 0}, {0, 4}, {4, 4}, {4, 4}, {4, 0}}).has_value());  // a vertex twice
  EXPECT_FALSE(BoxContact::of({{0, 0}, {0, 4}, {4, 4}, {4, 0}, {6, 0}, {4, 0}}).has_value());  // a spike
  EXPECT_FALSE(BoxContact::of({{0, 0}, {0, 4}, {4, 4}, {4, 0}, {-1, 0}}).has_value());  // another, at the end
  EXPECT_FALSE(BoxContact::of({{0, 0}, {-2, 4}, {2, 4}, {0, 0}, {2, -4}, {-2, -4}}).has_value());  // touches
  EXPECT_FALSE(BoxContact::of({{0, 0}, {0, 4}, {2, 1e-9}, {4, 4}, {4, 0}}).has_value());  // almost touches
  EXPECT_TRUE(BoxContact::of({{0, 0}, {0, 4}, {2, 1e-3}, {4, 4}, {4, 0}}).has_value());
  EXPECT_TRUE(BoxContact::of({{0, 0}, {0, 2}, {0, 4}, {4, 4}, {4, 0}}).has_value());  // goes straight on
}

TEST(BoxContacts, NeedARingOfAtMost64Vertices) {
  for (const int size : {64, 65}) {
    Vertices ring;
    for (int i = 0; i < size; ++i) {
      const double angle = 2.0 * std::numbers::pi * i / size;
      ring.emplace_back(10 * std::cos(angle), 10 * std::sin(angle));
    }
    EXPECT_EQ(BoxContact::of(ring).has_value(), size == 64);
  }
}

}  // namespace
}  // namespace orvantis::filter::monitor
