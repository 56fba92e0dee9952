#include <cstddef>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ByteText.h"
#include "Compressors.h"
#include "recording/Decoders.h"

namespace orvantis::toolkit {
namespace {

using testing::textOf;
using testing::viewOf;

// Some 300 kB, so that every kind makes several blocks of it, and half of them repeat what was before.
std::string content() {
  std::mt19937 random(3);
  std::string bytes;
  while (bytes.size() < 300'000) {
    bytes += std::to_string(random() % 1000) + " is a number; ";
  }
  return bytes;
}

struct Kind {
  std::string name;
  std::function<std::string(const std::string&)> compress;
  Decoder Decoders::*decoder;
};

class EveryDecoder : public ::testing::TestWithParam<Kind> {
 protected:
  Unfolded unfold(const std::string& compressed, std::size_t room) {
    room_.assign(room, '#');
    return decoder_(viewOf(compressed), std::as_writable_bytes(std::span(room_)));
  }

  Decoders decoders_ = builtInDecoders();
  Decoder decoder_ = decoders_.*GetParam().decoder;
  std::string content_ = content();
  std::string compressed_ = GetParam().compress(content_);
  std::string room_;
};

TEST_P(EveryDecoder, UnfoldsIntoRoomThatIsEnough) {
  for (const std::size_t more : {0U, 1U, 100'000U}) {
    const Unfolded unfolded = unfold(compressed_, content_.size() + more);
    EXPECT_EQ(unfolded.ending, Unfolding::complete);
    ASSERT_EQ(unfolded.size, content_.size());
    EXPECT_EQ(room_.substr(0, unfolded.size), content_);
  }
}

TEST_P(EveryDecoder, SaysWhenTheRoomIsFull) {
  for (const std::size_t room : {std::size_t{0}, std::size_t{1}, std::size_t{100'000}, content_.size() - 1}) {
    EXPECT_EQ(unfold(compressed_, room).ending, Unfolding::full) << room;
  }
  EXPECT_EQ(unfold(compressed_, content_.size()).ending, Unfolding::complete);
}

TEST_P(EveryDecoder, GivesWhatIsRightOfACutOne) {
  std::size_t most = 0;
  for (std::size_t size = 0; size < compressed_.size(); size += size < 64 ? 1 : 997) {
    const Unfolded unfolded = unfold(compressed_.substr(0, size), content_.size() + 1);
    ASSERT_EQ(unfolded.ending, Unfolding::cutOff) << size;
    ASSERT_EQ(room_.substr(0, unfolded.size), content_.substr(0, unfolded.size)) << size;
    ASSERT_GE(unfolded.size, most);
    most = unfolded.size;
  }
  EXPECT_GE(most, 100'000U);
}

TEST_P(EveryDecoder, SaysWhatIsWrong) {
  const Unfolded unfolded = unfold("these are some bytes, and not compressed ones", 1000);
  EXPECT_EQ(unfolded.ending, Unfolding::damaged);
  EXPECT_NE(unfolded.reason, "");
}

TEST_P(EveryDecoder, UnfoldsSeveralOneAfterTheOther) {
  const std::string other = "and some more";
  const std::string both = compressed_ + GetParam().compress(other);
  const Unfolded unfolded = unfold(both, content_.size() + other.size());
  EXPECT_EQ(unfolded.ending, Unfolding::complete);
  EXPECT_EQ(room_.substr(0, unfolded.size), content_ + other);
  EXPECT_EQ(unfold(both, content_.size() + 3).ending, Unfolding::full);
  EXPECT_EQ(unfold(compressed_ + "#!", content_.size() + 100).ending == Unfolding::complete, false);
}

TEST_P(EveryDecoder, IsAsGoodAsNewAfterAnything) {
  unfold(compressed_.substr(0, compressed_.size() / 2), content_.size());
  unfold("not compressed at all", 100);
  unfold(compressed_, 10);
  const Unfolded unfolded = unfold(compressed_, content_.size());
  EXPECT_EQ(unfolded.ending, Unfolding::complete);
  EXPECT_EQ(room_, content_);
}

TEST_P(EveryDecoder, WritesOnlyIntoItsRoom) {
  std::string small = GetParam().compress(content_.substr(0, 2000));
  for (std::size_t at = 0; at < small.size(); ++at) {
    for (const int change : {0x01, 0x10, 0xFF}) {
      small[at] = static_cast<char>(small[at] ^ change);
      const Unfolded unfolded = unfold(small, 2001);
      EXPECT_LE(unfolded.size, 2001U);
      small[at] = static_cast<char>(small[at] ^ change);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    , EveryDecoder,
    ::testing::Values(
        Kind{"lz4", [](const std::string& bytes) { return testing::lz4Of(bytes); }, &Decoders::lz4},
        Kind{"lz4Linked", [](const std::string& bytes) { return testing::lz4Of(bytes, true, true); },
             &Decoders::lz4},
        Kind{"zstd", [](const std::string& bytes) { return testing::zstdOf(bytes); }, &Decoders::zstd},
        Kind{"zstdOfUnknownSize",
             [](const std::string& bytes) { return testing::zstdOf(bytes, true, false); }, &Decoders::zstd},
        Kind{"bzip2", [](const std::string& bytes) { return testing::bzip2Of(bytes); }, &Decoders::bzip2}),
    [](const auto& kind) { return kind.param.name; });

}  // namespace
}  // namespace orvantis::toolkit
