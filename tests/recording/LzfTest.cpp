#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "FrameFiles.h"
#include "recording/Lzf.h"

namespace orvantis::toolkit {
namespace {

// What it gives, or "damaged at" the offset.
std::string decompressed(const std::string& in, std::size_t size) {
  // Exactly as long as they are, so that a sanitizer sees any byte too many.
  const std::vector<std::byte> input(testing::bytesOf(in).begin(), testing::bytesOf(in).end());
  std::vector<std::byte> output(size);
  if (const auto fault = decompressLzf(input, output)) {
    return "damaged at " + std::to_string(*fault);
  }
  return {reinterpret_cast<const char*>(output.data()), output.size()};
}

std::string literal(const std::string& bytes) {
  return static_cast<char>(bytes.size() - 1) + bytes;
}

// A reference to `size` bytes, `distance` bytes before.
std::string reference(std::size_t size, std::size_t distance) {
  const std::size_t far = distance - 1;
  const std::size_t length = std::min<std::size_t>(size - 2, 7);
  std::string bytes(1, static_cast<char>(length << 5U | far >> 8U));
  if (length == 7) {
    bytes += static_cast<char>(size - 9);
  }
  return bytes + static_cast<char>(far & 0xFFU);
}

TEST(Lzf, RunsAndReferencesAreExpanded) {
  EXPECT_EQ(decompressed("", 0), "");
  EXPECT_EQ(decompressed(literal("abc"), 3), "abc");
  EXPECT_EQ(decompressed(literal("abcd") + reference(3, 4) + literal("x"), 8), "abcdabcx");
  EXPECT_EQ(decompressed(literal("a") + reference(264, 1), 265), std::string(265, 'a'));
}

TEST(Lzf, ReferencesMayReachIntoWhatTheyWrite) {
  for (std::size_t distance = 1; distance <= 40; ++distance) {
    std::string start;
    for (std::size_t i = 0; i < distance; ++i) {
      start += static_cast<char>('a' + i % 26);
    }
    const std::string begin =
        start.size() > 32 ? literal(start.substr(0, 32)) + literal(start.substr(32)) : literal(start);
    for (std::size_t size = 3; size <= 264; ++size) {
      std::string expected = start;
      for (std::size_t i = 0; i < size; ++i) {
        expected += expected[expected.size() - distance];
      }
      // Up to the end of the output, and with room behind.
      ASSERT_EQ(decompressed(begin + reference(size, distance), expected.size()), expected);
      expected += std::string(20, 'z');
      ASSERT_EQ(
          decompressed(begin + reference(size, distance) + literal(std::string(20, 'z')), expected.size()),
          expected);
    }
  }
}

TEST(Lzf, TheFarthestReferenceIs8192BytesBack) {
  std::string in = literal("begin");
  std::string expected = "begin";
  while (expected.size() < 8192) {
    const std::string run(std::min<std::size_t>(32, 8192 - expected.size()), 'x');
    in += literal(run);
    expected += run;
  }
  EXPECT_EQ(decompressed(in + reference(5, 8192), 8197), expected + "begin");
}

TEST(Lzf, TheOutputMustBeFilledExactly) {
  const std::string in = literal("abcd") + reference(3, 4);
  EXPECT_EQ(decompressed(in, 7), "abcdabc");
  EXPECT_EQ(decompressed(in, 6), "damaged at 5");
  EXPECT_EQ(decompressed(in, 3), "damaged at 0");
  EXPECT_EQ(decompressed(in, 8), "damaged at 7");
  EXPECT_EQ(decompressed("", 1), "damaged at 0");
  EXPECT_EQ(decompressed(literal("a"), 0), "damaged at 0");
}

TEST(Lzf, WhatReachesOutsideIsDamaged) {
  EXPECT_EQ(decompressed(literal("abcd") + reference(3, 5), 7), "damaged at 5");
  EXPECT_EQ(decompressed(reference(3, 1), 3), "damaged at 0");
  EXPECT_EQ(decompressed(literal("abcd").substr(0, 4), 4), "damaged at 0");
  EXPECT_EQ(decompressed(literal("abcd") + "\x20", 7), "damaged at 5");
  EXPECT_EQ(decompressed(literal("abcd") + "\xE0", 20), "damaged at 5");
  EXPECT_EQ(decompressed(literal("abcd") + "\xE0\x01", 20), "damaged at 5");
}

TEST(Lzf, AnyBytesAreExpandedOrDamaged) {
  std::mt19937 random(5);
  for (int round = 0; round < 20000; ++round) {
    std::string in(random() % 40, '\0');
    for (char& c : in) {
      c = static_cast<char>(random() % 3 == 0 ? random() % 8 : random());
    }
    decompressed(in, random() % 300);
  }
}

}  // namespace
}  // namespace orvantis::toolkit
