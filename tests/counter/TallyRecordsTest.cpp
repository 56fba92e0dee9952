#include <cstdint>
#include <map>
#include <set>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <filter/detection/CounterLines.h>

namespace orvantis::filter::detection {
namespace {

template <typename Record>
constexpr bool isPlainValue = std::is_aggregate_v<Record>&& std::is_default_constructible_v<Record>&&
    std::is_copy_constructible_v<Record>&& std::is_move_constructible_v<Record>&&
        std::is_copy_assignable_v<Record>&& std::is_move_assignable_v<Record>;

static_assert(isPlainValue<CounterLineCounts>);
static_assert(isPlainValue<CounterLineDirections>);
static_assert(isPlainValue<CounterLineTrackable>);
static_assert(std::is_trivially_copyable_v<CounterLineTrackable>);

TEST(TallyRecords, CountsAreTwoOrderedSetsOfIds) {
  CounterLineCounts counts;
  auto& [left, right] = counts;
  static_assert(std::is_same_v<decltype(counts.left), std::set<std::int32_t>>);
  static_assert(std::is_same_v<decltype(counts.right), std::set<std::int32_t>>);
  EXPECT_TRUE(left.empty());
  EXPECT_TRUE(right.empty());
  left = {7, 3, 3};
  right = {-1};
  EXPECT_EQ(counts.left, (std::set<std::int32_t>{3, 7}));
  EXPECT_EQ(counts.right, std::set<std::int32_t>{-1});
}

TEST(TallyRecords, DirectionsAreOneOrderedMapFromIdToSide) {
  CounterLineDirections directions;
  auto& [sides] = directions;
  static_assert(std::is_same_v<decltype(directions.sides), std::map<std::int32_t, CounterLineDirectionType>>);
  EXPECT_TRUE(sides.empty());
  sides[7] = CounterLineDirectionType::RIGHT;
  EXPECT_EQ(directions.sides.at(7), CounterLineDirectionType::RIGHT);
}

TEST(TallyRecords, ATrackableIsTwoFieldsThatStartAtZero) {
  const CounterLineTrackable trackable;
  const auto [id, side] = trackable;
  EXPECT_EQ(id, 0);
  EXPECT_EQ(static_cast<int>(side), 0);
}

TEST(TallyRecords, CopiesAreIndependentAndMovesTakeAll) {
  CounterLineCounts counts{{1, 2}, {3}};
  const CounterLineCounts copy = counts;
  counts.left.insert(9);
  EXPECT_EQ(copy.left, (std::set<std::int32_t>{1, 2}));
  CounterLineCounts assigned;
  assigned = std::move(counts);
  EXPECT_EQ(assigned.left, (std::set<std::int32_t>{1, 2, 9}));
  EXPECT_EQ(assigned.right, std::set<std::int32_t>{3});

  const CounterLineDirections directions{{{4, CounterLineDirectionType::ON}}};
  CounterLineDirections other;
  other = directions;
  EXPECT_EQ(other.sides, directions.sides);

  CounterLineTrackable trackable{5, CounterLineDirectionType::RIGHT};
  const CounterLineTrackable same = trackable;
  trackable.id = 6;
  EXPECT_EQ(same.id, 5);
  EXPECT_EQ(same.side, CounterLineDirectionType::RIGHT);
}

}  // namespace
}  // namespace orvantis::filter::detection
