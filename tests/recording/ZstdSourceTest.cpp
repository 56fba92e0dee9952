#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "ByteText.h"
#include "Compressors.h"
#include "recording/ReadError.h"
#include "recording/ZstdSource.h"

namespace orvantis::toolkit {
namespace {

using testing::textOf;
using testing::viewOf;

std::string content(std::size_t size) {
  std::mt19937 random(5);
  std::string bytes;
  while (bytes.size() < size) {
    bytes += std::to_string(random()) + " ";
  }
  bytes.resize(size);
  return bytes;
}

// "byte 5: reason", or nothing.
std::string refusal(ByteSource& source, std::uint64_t offset, std::uint64_t count) {
  try {
    source.bytes(offset, count);
  } catch (const ReadError& error) {
    return toText(error.place()) + ": " + error.what();
  }
  return "";
}

TEST(ZstdSource, GivesRangesForwards) {
  const std::string text = content(3'000'000);
  // Two frames, one after the other.
  const std::string compressed =
      testing::zstdOf(text.substr(0, 1'000'000), true) + testing::zstdOf(text.substr(1'000'000));
  std::mt19937 random(11);
  for (int run = 0; run < 20; ++run) {
    MemorySource memory(viewOf(compressed));
    ZstdSource source(memory);
    EXPECT_FALSE(source.size());
    std::uint64_t offset = 0;
    while (offset < text.size() + 1000) {
      const std::uint64_t count = random() % (run % 2 == 0 ? 100'000 : 1'500'000);
      const std::string expected = offset < text.size() ? text.substr(offset, count) : "";
      ASSERT_EQ(textOf(source.bytes(offset, count)), expected) << offset << ' ' << count;
      offset += random() % 3 == 0 ? 0 : random() % 200'000;
    }
  }
}

TEST(ZstdSource, EndsWhereItIsCutAndSaysSoWhenAskedForMore) {
  const std::string text = content(500'000);
  const std::string whole = testing::zstdOf(text);
  const std::string compressed = whole.substr(0, whole.size() - 1);
  MemorySource memory(viewOf(compressed));
  ZstdSource source(memory);
  const std::string part = textOf(source.bytes(0, text.size()));
  EXPECT_GE(part.size(), 300'000U);
  EXPECT_EQ(part, text.substr(0, part.size()));
  EXPECT_EQ(refusal(source, part.size(), 1), "byte " + std::to_string(part.size()) +
                                                 ": the compressed file is cut off at its byte " +
                                                 std::to_string(compressed.size()));
}

TEST(ZstdSource, SaysWhereTheFileIsDamaged) {
  const std::string compressed = testing::zstdOf("some text") + "no frame";
  MemorySource memory(viewOf(compressed));
  ZstdSource source(memory);
  EXPECT_EQ(textOf(source.bytes(0, 9)), "some text");
  EXPECT_EQ(refusal(source, 9, 1), "byte 9: the compressed file is damaged at its byte " +
                                       std::to_string(compressed.size() - 8) +
                                       "; zstd says: Unknown frame descriptor");
}

TEST(ZstdSource, HoldsNoMoreThanAFewBytesMayUnfoldTo) {
  const std::string compressed = testing::zstdOf(std::string(std::size_t{200} * 1024 * 1024, '\0'));
  MemorySource memory(viewOf(compressed));
  ZstdSource source(memory);
  EXPECT_EQ(source.bytes(0, 60'000'000).size(), 60'000'000U);
  EXPECT_EQ(source.bytes(100'000'000, 1000).size(), 1000U);
  EXPECT_EQ(
      refusal(source, 100'000'001, 10'000'000'000),
      "byte 100000001: a record is longer than the 67108864 bytes that are allowed in a file compressed as a "
      "whole");
}

}  // namespace
}  // namespace orvantis::toolkit
