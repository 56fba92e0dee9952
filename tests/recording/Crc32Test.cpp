#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "ByteText.h"
#include "WrittenRecording.h"
#include "recording/Crc32.h"

namespace orvantis::toolkit {
namespace {

using testing::slowCrc;
using testing::viewOf;

std::string noise(std::size_t size) {
  std::mt19937 random(7);
  std::string bytes(size, '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(random());
  }
  return bytes;
}

TEST(Crc32, IsTheOneOfTheStandard) {
  EXPECT_EQ(crc32(viewOf("123456789")), 0xCBF43926U);
  EXPECT_EQ(crc32(viewOf("")), 0U);
  EXPECT_EQ(crc32({}, 77), 77U);
}

TEST(Crc32, IsTheSameForEveryLengthAndPlaceInMemory) {
  const std::string bytes = noise(600);
  for (std::size_t size = 0; size < 300; ++size) {
    for (std::size_t begin = 0; begin < 17; ++begin) {
      const std::string part = bytes.substr(begin, size);
      ASSERT_EQ(crc32(viewOf(bytes).subspan(begin, size)), slowCrc(part)) << size;
    }
  }
  EXPECT_EQ(crc32(viewOf(bytes)), slowCrc(bytes));
}

TEST(Crc32, GoesOnFromTheBytesBefore) {
  const std::string bytes = noise(500);
  for (std::size_t cut = 0; cut <= bytes.size(); cut += 11) {
    const std::uint32_t first = crc32(viewOf(bytes).first(cut));
    EXPECT_EQ(crc32(viewOf(bytes).subspan(cut), first), slowCrc(bytes));
  }
}

TEST(Crc32, OfTwoRunsFollowsFromBoth) {
  const std::string bytes = noise(70'000);
  for (const std::size_t cut : {0U, 1U, 2U, 63U, 4096U, 65'535U, 65'536U, 69'999U, 70'000U}) {
    EXPECT_EQ(
        crc32OfBoth(crc32(viewOf(bytes).first(cut)), crc32(viewOf(bytes).subspan(cut)), bytes.size() - cut),
        slowCrc(bytes))
        << cut;
  }
}

}  // namespace
}  // namespace orvantis::toolkit
