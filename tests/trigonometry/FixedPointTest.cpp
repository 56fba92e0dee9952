#include <gtest/gtest.h>

#include "trigonometry/FixedPoint.h"

namespace orvantis::testing {
namespace {

using trigonometry::Binary;
using trigonometry::FixedPoint;

bool areEqual(const FixedPoint& a, const FixedPoint& b) {
  return !(a < b) && !(b < a);
}

FixedPoint number(const Binary& value) {
  return FixedPoint(4, value);
}

TEST(FixedPoint, HoldsWholeNumbersAndFractions) {
  EXPECT_TRUE(areEqual(FixedPoint(4, 7), number({7, 0})));
  EXPECT_TRUE(areEqual(number({7, 0}), number({7U * 1024U, -10})));
  EXPECT_TRUE(areEqual(number({1, 31}), FixedPoint(4, 0x80000000U)));
  EXPECT_TRUE(FixedPoint(4).isZero());
  EXPECT_FALSE(number({1, -128}).isZero());
  EXPECT_TRUE(number({1, -129}).isZero());
  EXPECT_TRUE(areEqual(number({3, -129}), number({1, -128})));
  EXPECT_TRUE(number({~trigonometry::Wide{0}, -1000}).isZero());
}

TEST(FixedPoint, IsOrderedByItsHighestWords) {
  EXPECT_TRUE(number({1, -1}) < number({1, 0}));
  EXPECT_FALSE(number({1, 0}) < number({1, -1}));
  EXPECT_TRUE(number({1, 0}) < number({(trigonometry::Wide{1} << 100) + 1, -100}));
  EXPECT_FALSE(number({5, 0}) < number({5, 0}));
}

TEST(FixedPoint, CarriesAndBorrowsThroughAllWords) {
  FixedPoint value = number({(trigonometry::Wide{1} << 127) - 1 + (trigonometry::Wide{1} << 127), -128});
  value += number({1, -128});
  EXPECT_TRUE(areEqual(value, FixedPoint(4, 1)));
  value -= number({1, -128});
  value += number({1, -128});
  EXPECT_TRUE(areEqual(value, FixedPoint(4, 1)));
  value -= number({1, -1});
  EXPECT_TRUE(areEqual(value, number({1, -1})));
  value += value;
  EXPECT_TRUE(areEqual(value, FixedPoint(4, 1)));
}

TEST(FixedPoint, MultipliesAndDividesAndCutsOff) {
  EXPECT_TRUE(areEqual(number({3, -1}) * number({5, -2}), number({15, -3})));
  EXPECT_TRUE(areEqual(number({0xFFFFFFFF, 0}) * number({1, -128}), number({0xFFFFFFFF, -128})));
  EXPECT_TRUE(areEqual(number({0xFFFFFFFFFFFFFFFF, -64}) * number({0xFFFFFFFFFFFFFFFF, -64}),
                       number({~trigonometry::Wide{0} - ((trigonometry::Wide{1} << 65) - 2), -128})));
  EXPECT_TRUE((number({1, -100}) * number({1, -100})).isZero());
  FixedPoint third(4, 1);
  third /= 3;
  EXPECT_TRUE(areEqual(third, number({~trigonometry::Wide{0} / 3, -128})));
  FixedPoint large(4, 0xFFFFFFFF);
  large /= 0xFFFFFFFF;
  EXPECT_TRUE(areEqual(large, FixedPoint(4, 1)));
}

TEST(FixedPoint, IsCutToFewerWords) {
  EXPECT_TRUE(areEqual(number({5, -64}).cutTo(2), FixedPoint(2, Binary{5, -64})));
  EXPECT_TRUE(
      areEqual(number({(trigonometry::Wide{5} << 64) + 7, -128}).cutTo(2), FixedPoint(2, Binary{5, -64})));
}

TEST(FixedPoint, ComparesUpToTheLastWord) {
  const FixedPoint value = number({3, 0});
  EXPECT_EQ(compare(value, value), 0);
  for (const Binary& little : {Binary{1, -128}, Binary{0xFFFFFFFF, -128}}) {
    FixedPoint more = value;
    more += number(little);
    EXPECT_EQ(compare(more, value), 0);
    EXPECT_EQ(compare(value, more), 0);
  }
  for (const Binary& much : {Binary{1, -96}, Binary{1, 0}}) {
    FixedPoint more = value;
    more += number(much);
    EXPECT_EQ(compare(more, value), 1);
    EXPECT_EQ(compare(value, more), -1);
  }
}

}  // namespace
}  // namespace orvantis::testing
