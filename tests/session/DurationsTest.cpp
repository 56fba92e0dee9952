#include <algorithm>
#include <chrono>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "session/Durations.h"
#include "support/AllocationCounter.h"

namespace orvantis::toolkit {
namespace {

using std::chrono::nanoseconds;

Durations of(const std::vector<std::int64_t>& values) {
  Durations durations;
  for (const std::int64_t value : values) {
    durations.add(nanoseconds(value));
  }
  return durations;
}

TEST(Durations, TheMedianIsTheMiddleValue) {
  EXPECT_FALSE(of({}).median().has_value());
  EXPECT_FALSE(of({}).longest().has_value());
  EXPECT_EQ(of({7}).median(), nanoseconds(7));
  EXPECT_EQ(of({9, 1, 4}).median(), nanoseconds(4));
  EXPECT_EQ(of({9, 1, 5, 4}).median(), nanoseconds(4));
  EXPECT_EQ(of({2, 2, 2, 9}).median(), nanoseconds(2));
  EXPECT_EQ(of({9, 1, 5, 4}).count(), 4U);
}

TEST(Durations, TheMedianHasFourSignificantDigitsAndTheLongestAll) {
  EXPECT_EQ(of({9999}).median(), nanoseconds(9999));
  EXPECT_EQ(of({123'450'000}).median(), nanoseconds(123'500'000));
  EXPECT_EQ(of({123'449'999}).median(), nanoseconds(123'400'000));
  EXPECT_EQ(of({99'996}).median(), nanoseconds(100'000));
  EXPECT_EQ(of({123'449'999, 5}).longest(), nanoseconds(123'449'999));
  EXPECT_EQ(of({std::numeric_limits<std::int64_t>::max()}).median(), nanoseconds(9'223'000'000'000'000'000));
}

TEST(Durations, RandomOnesAreCloseToTheSortedMiddle) {
  std::mt19937_64 random(20);  // NOLINT: the same numbers in every run
  for (int round = 0; round < 200; ++round) {
    std::vector<std::int64_t> values(1 + random() % 50);
    std::ranges::generate(values,
                          [&random] { return static_cast<std::int64_t>(random() >> (1 + random() % 60)); });
    const Durations durations = of(values);
    std::ranges::sort(values);
    const double lower = static_cast<double>(values[(values.size() - 1) / 2]);
    const double upper = static_cast<double>(values[values.size() / 2]);
    const double exact = lower + (upper - lower) / 2.0;
    EXPECT_NEAR(static_cast<double>(durations.median()->count()), exact, 0.0005 * exact + 1.0)
        << "round " << round;
    EXPECT_EQ(durations.longest(), nanoseconds(values.back())) << "round " << round;
  }
}

TEST(Durations, MemoryDoesNotGrowWithTheirNumber) {
  Durations durations;
  std::mt19937_64 random(21);  // NOLINT: the same numbers in every run
  const auto addBetween1And10Milliseconds = [&] {
    for (int i = 0; i < 200'000; ++i) {
      durations.add(nanoseconds(1'000'000 + static_cast<std::int64_t>(random() % 9'000'000)));
    }
  };
  addBetween1And10Milliseconds();
  const testing::AllocationCounter allocations;
  addBetween1And10Milliseconds();
  EXPECT_EQ(allocations.count(), 0U);
}

}  // namespace
}  // namespace orvantis::toolkit
