// Recordings that other programs wrote (tests/data/recordings), and the points that they wrote into them.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ReadRecording.h"
#include "RecordingSamples.h"
#include "files/FileSource.h"

namespace orvantis::testing {
namespace {

const std::filesystem::path folder =
    std::filesystem::path(ORVANTIS_SOURCE_DIR) / "tests" / "data" / "recordings";

// As both scripts there say.
std::vector<ReadCloud> writtenClouds() {
  std::vector<ReadCloud> clouds;
  for (int k = 0; k < 4; ++k) {
    const std::int64_t second = (std::int64_t{1'700'000'000} + k) * 1'000'000'000;
    ReadCloud cloud{"/points", second + 5, second + 1000, "lidar" + std::to_string(k), {}, 0};
    for (int i = 0; i < k + 2; ++i) {
      cloud.points.push_back({k + i / 8.0, -i / 4.0, k / 2.0 - i / 16.0});
    }
    clouds.push_back(cloud);
  }
  return clouds;
}

class SampleRecordings : public ::testing::TestWithParam<const char*> {
 protected:
  std::string path_ = (folder / GetParam()).string();
  std::vector<ReadCloud> clouds_ = writtenClouds();
};

TEST_P(SampleRecordings, GiveThePointsThatWereWritten) {
  toolkit::FileSource source(path_);
  const ReadRecording result = readRecording(source);
  EXPECT_EQ(placeless(result.clouds), clouds_);
  EXPECT_EQ(result.refusal + result.damage, "");
  ASSERT_EQ(result.topics.size(), 2U);
  EXPECT_EQ(result.topics[0].read, 4U);
  EXPECT_EQ(result.topics[1].read, 4U);
}

TEST_P(SampleRecordings, CutAnywhereGiveTheWholeCloudsBeforeIt) {
  std::ifstream in(path_, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  const toolkit::RecordingOptions options;
  std::size_t most = 0;
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    const ReadRecording result = readRecording(bytes.substr(0, size), options);
    const std::vector<ReadCloud> clouds = placeless(result.clouds);
    ASSERT_TRUE(clouds.size() <= 4 && std::equal(clouds.begin(), clouds.end(), clouds_.begin())) << size;
    ASSERT_GE(clouds.size(), most);
    most = clouds.size();
    ASSERT_NE(result.refusal.empty(), result.damage.empty()) << size;
  }
  EXPECT_EQ(most, 4U);
}

INSTANTIATE_TEST_SUITE_P(, SampleRecordings,
                         ::testing::Values("plain.mcap", "unchunked.mcap", "unchunked_bare.mcap", "lz4.mcap",
                                           "lz4_linked_bare.mcap", "zstd.mcap", "whole.mcap.zst", "none.bag",
                                           "bz2.bag", "lz4.bag"),
                         [](const auto& name) {
                           std::string text = name.param;
                           std::replace(text.begin(), text.end(), '.', '_');
                           return text;
                         });

}  // namespace
}  // namespace orvantis::testing
