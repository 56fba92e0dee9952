#include <bit>
#include <cstdint>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include <filter/detection/Point.h>

namespace orvantis::filter::detection {
namespace {

std::uint64_t bits(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

TEST(Point, HoldsXThenY) {
  const Point point(1.5, -2.5);
  EXPECT_EQ(point.x(), 1.5);
  EXPECT_EQ(point.y(), -2.5);
}

TEST(Point, SetOverwritesBothCoordinates) {
  Point point(1, 2);
  point.set(3, 4);
  EXPECT_EQ(point.x(), 3.0);
  EXPECT_EQ(point.y(), 4.0);
}

TEST(Point, IsCopiedAndMovedBitForBit) {
  for (const double odd :
       {-0.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::denorm_min()}) {
    const Point source(odd, -odd);
    Point copy(0, 0);
    copy = source;
    EXPECT_EQ(bits(copy.x()), bits(odd));
    EXPECT_EQ(bits(copy.y()), bits(-odd));
    Point moved(0, 0);
    moved = std::move(copy);
    EXPECT_EQ(bits(moved.x()), bits(odd));
    EXPECT_EQ(bits(moved.y()), bits(-odd));
  }
}

TEST(Point, AssignedToItselfStaysAsItIs) {
  Point point(1, 2);
  Point& same = point;
  point = same;
  EXPECT_EQ(point.x(), 1.0);
  EXPECT_EQ(point.y(), 2.0);
}

}  // namespace
}  // namespace orvantis::filter::detection
