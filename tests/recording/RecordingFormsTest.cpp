// Every form of a recording that is read: whole, cut at every byte, spoiled at every byte.

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "ByteText.h"
#include "ReadRecording.h"
#include "RecordingSamples.h"

namespace orvantis::testing {
namespace {

class RecordingForms : public ::testing::TestWithParam<Sample> {
 protected:
  // Some of the sample's clouds, in their order.
  bool arePart(const std::vector<ReadCloud>& clouds) const {
    std::size_t at = 0;
    for (const ReadCloud& cloud : clouds_) {
      at += at < clouds.size() && clouds[at] == cloud ? 1U : 0U;
    }
    return at == clouds.size();
  }

  std::vector<ReadCloud> clouds_ = sampleClouds();
  toolkit::RecordingOptions options_;

  // The first clouds of the sample, as many as they are.
  bool areFirst(const std::vector<ReadCloud>& clouds) const {
    return clouds.size() <= clouds_.size() && std::equal(clouds.begin(), clouds.end(), clouds_.begin());
  }
};

TEST_P(RecordingForms, GiveEveryCloud) {
  const ReadRecording result = readRecording(GetParam().bytes);
  EXPECT_EQ(placeless(result.clouds), clouds_);
  EXPECT_EQ(result.refusal, "");
  const bool isOpen = GetParam().name.find("not closed") != std::string::npos;
  EXPECT_EQ(result.damage.empty(), !isOpen) << result.damage;
  EXPECT_EQ(result.stampsBack.count, 0U);
  ASSERT_EQ(result.topics.size(), 2U);
  const auto read = [&](const std::string& name) {
    return std::find_if(result.topics.begin(), result.topics.end(),
                        [&](const toolkit::Topic& topic) { return topic.name == name; })
        ->read;
  };
  EXPECT_EQ(read("/points"), 4U);
  EXPECT_EQ(read("/status"), 3U);
}

TEST_P(RecordingForms, CutAnywhereGiveTheWholeCloudsBeforeIt) {
  const std::string& bytes = GetParam().bytes;
  std::size_t most = 0;
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    const ReadRecording result = readRecording(bytes.substr(0, size), options_);
    ASSERT_TRUE(areFirst(placeless(result.clouds))) << size;
    ASSERT_GE(result.clouds.size(), most) << size;
    most = result.clouds.size();
    // What is cut off is said, as a refusal or as damage, and never both.
    ASSERT_NE(result.refusal.empty(), result.damage.empty())
        << size << ' ' << result.refusal << result.damage;
    ASSERT_EQ(result.refusal.empty(), most != 0) << size << ' ' << result.refusal;
    ASSERT_TRUE(result.place <= size || GetParam().name == "mcap in zstd") << size << ' ' << result.place;
  }
  EXPECT_EQ(most, clouds_.size());
}

// Where a CRC is there no cloud is read that was not written, and where messages are counted none is missing,
// without a word.
TEST_P(RecordingForms, SpoiledAnywhereGiveNothingElse) {
  std::string bytes = GetParam().bytes;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    for (const int change : {0x01, 0x80, 0xFF}) {
      bytes[at] = static_cast<char>(bytes[at] ^ change);
      const ReadRecording result = readRecording(bytes, options_);
      bytes[at] = GetParam().bytes[at];
      if (!GetParam().hasCrcs || !result.refusal.empty() || !result.damage.empty()) {
        continue;
      }
      const std::vector<ReadCloud> clouds = placeless(result.clouds);
      ASSERT_TRUE(arePart(clouds)) << at << ' ' << change;
      ASSERT_TRUE(clouds.size() == clouds_.size() || !GetParam().countsAll) << at << ' ' << change;
    }
  }
}

// Bytes of which half go away after some calls.
class Shrinking final : public toolkit::ByteSource {
 public:
  Shrinking(std::string_view bytes, std::size_t calls)
      : memory_(viewOf(bytes)), half_(bytes.size() / 2), calls_(calls) {}

  std::optional<std::uint64_t> size() const override { return memory_.size(); }
  std::span<const std::byte> bytes(std::uint64_t offset, std::uint64_t count) override {
    const std::uint64_t end = calls_ == 0 ? half_ : *memory_.size();
    calls_ -= calls_ == 0 ? 0 : 1;
    return memory_.bytes(std::min(offset, end), std::min(count, end - std::min(offset, end)));
  }

 private:
  toolkit::MemorySource memory_;
  std::uint64_t half_;
  std::size_t calls_;
};

TEST_P(RecordingForms, ThatBecomeShorterWhileTheyAreReadAreCutOffThere) {
  for (std::size_t calls = 0; calls < 120; ++calls) {
    Shrinking source(GetParam().bytes, calls);
    const ReadRecording result = readRecording(source, options_);
    ASSERT_TRUE(areFirst(placeless(result.clouds))) << calls;
    ASSERT_TRUE(result.clouds.size() == clouds_.size() || !(result.refusal + result.damage).empty()) << calls;
  }
}

std::string nameOf(const ::testing::TestParamInfo<Sample>& info) {
  std::string name = info.param.name;
  std::replace_if(
      name.begin(), name.end(), [](char letter) { return letter == ' ' || letter == ','; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(, RecordingForms, ::testing::ValuesIn(allSamples()), nameOf);

}  // namespace
}  // namespace orvantis::testing
