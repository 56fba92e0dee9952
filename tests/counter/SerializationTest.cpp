#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <filter/detection/CounterLine.h>

namespace orvantis::filter::detection {
namespace {

using boost::property_tree::ptree;
using boost::property_tree::ptree_bad_data;
using boost::property_tree::ptree_bad_path;

using Point = CounterLine::point;
using Keys = std::vector<std::string>;

CounterLine line(const std::string& name, const Point& first, const Point& second) {
  return {name, first, second, nullptr, CounterLineDirectionType::LEFT};
}

Keys keys(const ptree& tree) {
  Keys names;
  for (const auto& child : tree) {
    names.push_back(child.first);
  }
  return names;
}

bool sameBits(const Point& a, const Point& b) {
  const double left[2] = {a.x(), a.y()};
  const double right[2] = {b.x(), b.y()};
  return std::memcmp(left, right, sizeof left) == 0;
}

ptree serialized(const CounterLine& line) {
  ptree tree;
  line.serialize(tree);
  return tree;
}

TEST(CounterLineTree, HoldsNameFirstAndSecondInThisOrder) {
  const ptree tree = serialized(line("L1", {1.5, 2.0}, {3.0, 4.0}));
  EXPECT_EQ(keys(tree), (Keys{"name", "first", "second"}));
  EXPECT_EQ(keys(tree.get_child("first")), (Keys{"x", "y"}));
  EXPECT_EQ(keys(tree.get_child("second")), (Keys{"x", "y"}));
  EXPECT_EQ(tree.get_child("name").data(), "L1");
  EXPECT_EQ(tree.get_child("first.x").data(), "1.5");
  EXPECT_EQ(tree.get_child("first.y").data(), "2");
  EXPECT_EQ(tree.get_child("second.x").data(), "3");
  EXPECT_EQ(tree.get_child("second.y").data(), "4");
}

TEST(CounterLineTree, ANameWithADotIsAValueAndNoPath) {
  const ptree tree = serialized(line("a.b.c", {0, 0}, {1, 0}));
  EXPECT_EQ(keys(tree), (Keys{"name", "first", "second"}));
  EXPECT_EQ(tree.get_child("name").data(), "a.b.c");
}

TEST(CounterLineTree, SerializingTwiceHoldsEachKeyTwice) {
  ptree tree;
  line("L1", {1, 2}, {3, 4}).serialize(tree);
  line("L2", {5, 6}, {7, 8}).serialize(tree);
  EXPECT_EQ(keys(tree), (Keys{"name", "first", "second", "name", "first", "second"}));
  EXPECT_EQ(tree.front().second.data(), "L1");
  EXPECT_EQ(tree.back().second.get_child("y").data(), "8");
}

TEST(CounterLineTree, RoundTripKeepsNameOrderAndEveryBit) {
  std::mt19937_64 random(7);
  std::vector<Point> points = {{0.0, -0.0},
                               {0.1, 1.0 / 3.0},
                               {5e-324, -2.2250738585072014e-308},
                               {std::numeric_limits<double>::max(), -std::numeric_limits<double>::max()},
                               {std::numeric_limits<double>::min(), 123456789012345680.0}};
  while (points.size() < 2000) {
    double coordinates[2];
    for (double& coordinate : coordinates) {
      do {
        const std::uint64_t bits = random();
        std::memcpy(&coordinate, &bits, sizeof coordinate);
      } while (!std::isfinite(coordinate));
    }
    points.emplace_back(coordinates[0], coordinates[1]);
  }
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    CounterLine copy;
    copy.deserialize(serialized(line("line", points[i], points[i + 1])));
    ASSERT_EQ(copy.getName(), "line");
    ASSERT_EQ(copy.getPoints().size(), 2U);
    ASSERT_TRUE(sameBits(copy.getPoints()[0], points[i])) << points[i].x() << ", " << points[i].y();
    ASSERT_TRUE(sameBits(copy.getPoints()[1], points[i + 1]))
        << points[i + 1].x() << ", " << points[i + 1].y();
  }
}

TEST(CounterLineTree, ReadingReplacesPointsWithoutOrderingThem) {
  const Point reference(0.0, 1.0);
  CounterLine kept("L", {0, 0}, {1, 0}, &reference, CounterLineDirectionType::LEFT);
  kept.deserialize(serialized(line("turned", {1, 0}, {0, 0})));
  EXPECT_EQ(kept.getName(), "turned");
  EXPECT_TRUE(sameBits(kept.getPoints()[0], Point(1, 0)));
  EXPECT_TRUE(sameBits(kept.getPoints()[1], Point(0, 0)));
  EXPECT_EQ(kept.direction(reference), CounterLineDirectionType::RIGHT);
}

TEST(CounterLineTree, ReadsTheFirstOfRepeatedKeys) {
  ptree tree;
  line("L1", {1, 2}, {3, 4}).serialize(tree);
  line("L2", {5, 6}, {7, 8}).serialize(tree);
  CounterLine read;
  read.deserialize(tree);
  EXPECT_EQ(read.getName(), "L1");
  EXPECT_TRUE(sameBits(read.getPoints()[1], Point(3, 4)));
}

TEST(CounterLineTree, AMissingKeyThrowsAndLeavesTheOldPoints) {
  for (const std::string key : {"first", "second", "first.x", "first.y", "second.x", "second.y"}) {
    ptree tree = serialized(line("new", {1, 2}, {3, 4}));
    const std::size_t dot = key.find('.');
    (dot == std::string::npos ? tree : tree.get_child(key.substr(0, dot))).erase(key.substr(dot + 1));
    CounterLine read = line("old", {5, 6}, {7, 8});
    EXPECT_THROW(read.deserialize(tree), ptree_bad_path) << key;
    EXPECT_EQ(read.getName(), "new") << "the name is taken before the points are read";
    EXPECT_TRUE(sameBits(read.getPoints()[0], Point(5, 6))) << key;
    EXPECT_TRUE(sameBits(read.getPoints()[1], Point(7, 8))) << key;
  }
}

TEST(CounterLineTree, AMissingNameThrowsAndChangesNothing) {
  ptree tree = serialized(line("new", {1, 2}, {3, 4}));
  tree.erase("name");
  CounterLine read = line("old", {5, 6}, {7, 8});
  EXPECT_THROW(read.deserialize(tree), ptree_bad_path);
  EXPECT_EQ(read.getName(), "old");
  EXPECT_TRUE(sameBits(read.getPoints()[0], Point(5, 6)));
}

TEST(CounterLineTree, ANumberThatDoesNotConvertThrowsAndLeavesTheOldPoints) {
  for (const std::string key : {"first.x", "first.y", "second.x", "second.y"}) {
    for (const std::string value : {"far", "", "1,5", "1.5m", "nan", "1e999"}) {
      ptree tree = serialized(line("new", {1, 2}, {3, 4}));
      tree.put(key, value);
      CounterLine read = line("old", {5, 6}, {7, 8});
      EXPECT_THROW(read.deserialize(tree), ptree_bad_data) << key << " = " << value;
      EXPECT_EQ(read.getName(), "new");
      EXPECT_TRUE(sameBits(read.getPoints()[0], Point(5, 6))) << key << " = " << value;
      EXPECT_TRUE(sameBits(read.getPoints()[1], Point(7, 8))) << key << " = " << value;
    }
  }
}

TEST(CounterLineTree, ACoordinateThatIsNotFiniteIsWrittenAndCannotBeRead) {
  const double infinity = std::numeric_limits<double>::infinity();
  const std::vector<std::pair<double, std::string>> numbers = {
      {infinity, "inf"}, {-infinity, "-inf"}, {std::numeric_limits<double>::quiet_NaN(), "nan"}};
  for (const auto& [number, text] : numbers) {
    const ptree tree = serialized(line("L", {1, 2}, {3, number}));
    EXPECT_EQ(tree.get_child("second.y").data(), text);
    CounterLine read;
    EXPECT_THROW(read.deserialize(tree), ptree_bad_data) << text;
  }
}

TEST(CounterLineTree, NumbersMayStandBetweenBlanks) {
  ptree tree = serialized(line("L", {1, 2}, {3, 4}));
  tree.put("first.x", " 1.5 ");
  tree.put("second.y", "+1e2");
  CounterLine read;
  read.deserialize(tree);
  EXPECT_TRUE(sameBits(read.getPoints()[0], Point(1.5, 2)));
  EXPECT_TRUE(sameBits(read.getPoints()[1], Point(3, 100)));
}

TEST(CounterLineTree, AMovedFromLineIsWrittenAsOneAtTheOriginAndCanBeRead) {
  CounterLine source = line("L", {1, 2}, {3, 4});
  const CounterLine moved(std::move(source));
  source.setName("gone");  // NOLINT(bugprone-use-after-move): what is left is under test
  const ptree tree = serialized(source);
  EXPECT_EQ(tree.get_child("name").data(), "gone");
  EXPECT_EQ(tree.get_child("first.x").data(), "0");
  EXPECT_EQ(tree.get_child("second.y").data(), "0");
  source.deserialize(serialized(moved));
  ASSERT_EQ(source.getPoints().size(), 2U);
  EXPECT_TRUE(sameBits(source.getPoints()[0], Point(1, 2)));
  EXPECT_TRUE(sameBits(source.getPoints()[1], Point(3, 4)));
}

}  // namespace
}  // namespace orvantis::filter::detection
