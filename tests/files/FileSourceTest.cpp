#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <span>
#include <string>

#include <gtest/gtest.h>

#include "files/ByteSource.h"
#include "files/Failure.h"
#include "files/FileSource.h"
#include "support/TemporaryFolder.h"

using namespace orvantis::toolkit;
using orvantis::testing::TemporaryFolder;

namespace {

std::string textOf(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string content(std::size_t size) {
  std::string text(size, '\0');
  for (std::size_t i = 0; i < size; ++i) {
    text[i] = static_cast<char>(i * 7 + i / 251);
  }
  return text;
}

// The same ranges of the same bytes, from a file and from memory.
class Sources : public ::testing::Test {
 protected:
  void check(std::uint64_t offset, std::uint64_t count) {
    const std::string expected = offset < text_.size() ? text_.substr(static_cast<std::size_t>(offset),
                                                                      static_cast<std::size_t>(count))
                                                       : "";
    EXPECT_EQ(textOf(file_.bytes(offset, count)), expected) << offset << ' ' << count;
    EXPECT_EQ(textOf(memory_.bytes(offset, count)), expected) << offset << ' ' << count;
  }

  TemporaryFolder folder_;
  std::string text_ = content(100'000);
  FileSource file_{folder_.write("bytes", text_)};
  MemorySource memory_{std::as_bytes(std::span(text_))};
};

}  // namespace

TEST_F(Sources, KnowTheirSize) {
  EXPECT_EQ(file_.size(), 100'000U);
  EXPECT_EQ(memory_.size(), 100'000U);
}

TEST_F(Sources, GiveAnyRangeInAnyOrder) {
  for (const std::uint64_t offset : {0U, 1U, 4095U, 4096U, 50'000U, 99'999U, 3U, 60'000U, 55'000U}) {
    for (const std::uint64_t count : {0U, 1U, 9U, 4096U, 4097U, 40'000U}) {
      check(offset, count);
    }
  }
}

TEST_F(Sources, EndWhereTheBytesEnd) {
  check(99'990, 20);
  check(100'000, 1);
  check(100'001, 1);
  check(std::numeric_limits<std::uint64_t>::max(), 1);
  check(5, std::numeric_limits<std::uint64_t>::max());
  check(std::numeric_limits<std::uint64_t>::max(), std::numeric_limits<std::uint64_t>::max());
  check(10, 10);
}

TEST_F(Sources, AFileThatGrowsShorterEndsThere) {
  std::filesystem::resize_file(folder_.path("bytes"), 50'000);
  EXPECT_EQ(textOf(file_.bytes(49'990, 20)), text_.substr(49'990, 10));
  EXPECT_EQ(textOf(file_.bytes(60'000, 20)), "");
  EXPECT_EQ(textOf(file_.bytes(10, 20)), text_.substr(10, 20));
}

TEST(FileSource, SaysWhyAFileCannotBeRead) {
  const TemporaryFolder folder;
  try {
    const FileSource source(folder.path("missing"));
    FAIL() << "there is no such file";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.path(), folder.path("missing"));
    EXPECT_EQ(failure.reason(), "cannot be read: No such file or directory");
  }
  EXPECT_THROW(FileSource(folder.path()), Failure);
}

TEST(FileSource, MayBeEmpty) {
  const TemporaryFolder folder;
  FileSource source(folder.write("empty", ""));
  EXPECT_EQ(source.size(), 0U);
  EXPECT_TRUE(source.bytes(0, 1).empty());
}
