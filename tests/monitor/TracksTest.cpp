#include <cstdint>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "monitor/Tracks.h"

namespace orvantis::filter::monitor {
namespace {

using Names = std::vector<std::pair<std::int32_t, std::string>>;

Stamp second(std::int64_t seconds) {
  return std::chrono::seconds(seconds);
}

// Calls them by their first sighting.
Tracks<std::string>::Sighting see(Tracks<std::string>& tracks, std::int32_t id, std::int64_t seconds) {
  return tracks.see(id, second(seconds), [&] { return std::to_string(seconds); });
}

Names all(const Tracks<std::string>& tracks) {
  Names names;
  tracks.forEach([&](std::int32_t id, const std::string& name, Stamp) { names.emplace_back(id, name); });
  return names;
}

Names forget(Tracks<std::string>& tracks, std::int64_t now, std::int64_t age) {
  Names names;
  tracks.forget(second(now), second(age),
                [&](std::int32_t id, const std::string& name, Stamp) { names.emplace_back(id, name); });
  return names;
}

TEST(TrackList, KeepsEachTrackFromItsFirstSightingOn) {
  Tracks<std::string> tracks;
  EXPECT_TRUE(see(tracks, 7, 1).isFirst);
  EXPECT_TRUE(see(tracks, 3, 1).isFirst);
  EXPECT_FALSE(see(tracks, 7, 2).isFirst);
  EXPECT_EQ(see(tracks, 7, 3).track, "1");
  EXPECT_EQ(*tracks.find(3), "1");
  EXPECT_EQ(tracks.find(4), nullptr);
  EXPECT_EQ(all(tracks), (Names{{3, "1"}, {7, "1"}}));
}

TEST(TrackList, ForgetsThoseThatAreDueByTheirIds) {
  Tracks<std::string> tracks;
  see(tracks, 9, 0);
  see(tracks, 5, 0);
  see(tracks, 7, 1);
  see(tracks, 5, 2);
  see(tracks, 2, 2);
  EXPECT_EQ(forget(tracks, 1, 2), Names());
  EXPECT_EQ(forget(tracks, 3, 2), (Names{{7, "1"}, {9, "0"}}));
  EXPECT_EQ(tracks.size(), 2U);
  EXPECT_TRUE(see(tracks, 9, 3).isFirst);
  EXPECT_EQ(all(tracks), (Names{{2, "2"}, {5, "0"}, {9, "3"}}));
  EXPECT_EQ(forget(tracks, 100, 2).size(), 3U);
  EXPECT_EQ(tracks.size(), 0U);
  EXPECT_EQ(forget(tracks, 200, 2), Names());
}

TEST(TrackList, IsUnchangedWhereATrackCannotBeMade) {
  Tracks<std::string> tracks;
  see(tracks, 1, 0);
  EXPECT_THROW(tracks.see(2, second(1), []() -> std::string { throw std::bad_alloc(); }), std::bad_alloc);
  EXPECT_EQ(all(tracks), (Names{{1, "0"}}));
  EXPECT_TRUE(see(tracks, 2, 1).isFirst);
}

TEST(TrackList, IsAValue) {
  Tracks<std::string> tracks;
  see(tracks, 1, 0);
  see(tracks, 2, 0);
  Tracks<std::string> copy = tracks;
  see(copy, 1, 5);
  EXPECT_EQ(forget(copy, 6, 2), (Names{{2, "0"}}));
  EXPECT_EQ(all(tracks), (Names{{1, "0"}, {2, "0"}}));
  EXPECT_EQ(forget(tracks, 6, 2).size(), 2U);
}

// Against a map in which everything is looked at.
TEST(TrackList, AgreesWithAPlainOneOverALongRandomLife) {
  std::mt19937 random(11);
  const auto upTo = [&](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
  Tracks<std::string> tracks;
  std::map<std::int32_t, std::pair<std::string, std::int64_t>> plain;
  std::size_t forgotten = 0;
  for (std::int64_t now = 0; now < 5'000; ++now) {
    const std::int64_t age = 3 + upTo(5);
    Names expected;
    for (auto entry = plain.begin(); entry != plain.end();) {
      const bool isDue = now - entry->second.second >= age;
      if (isDue) {
        expected.emplace_back(entry->first, entry->second.first);
      }
      entry = isDue ? plain.erase(entry) : std::next(entry);
    }
    forgotten += expected.size();
    ASSERT_EQ(forget(tracks, now, age), expected) << now;
    const bool isInOrder = upTo(1) == 0;
    for (std::int32_t k = 0; k < 8; ++k) {
      const std::int32_t id = isInOrder ? 4 * k + upTo(1) : upTo(40);
      const auto [entry, isFirst] = plain.try_emplace(id, std::to_string(now), now);
      entry->second.second = now;
      const auto sighting = see(tracks, id, now);
      ASSERT_EQ(sighting.isFirst, isFirst);
      ASSERT_EQ(sighting.track, entry->second.first);
    }
    ASSERT_EQ(tracks.size(), plain.size());
  }
  EXPECT_GT(forgotten, 5'000U);
}

}  // namespace
}  // namespace orvantis::filter::monitor
