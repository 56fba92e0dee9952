#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "files/Failure.h"
#include "files/File.h"
#include "support/TemporaryFolder.h"

namespace orvantis::toolkit {
namespace {

using testing::TemporaryFolder;

std::string reasonOf(const std::string& path) {
  try {
    readBytes(path);
    return "";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.path(), path);
    return failure.reason();
  }
}

TEST(File, IsReadIntoTheMemoryThatIsGiven) {
  const TemporaryFolder folder;
  const std::string path = folder.write("a", std::string("1\0002", 3));
  std::vector<std::byte> room(1000);
  const std::byte* const at = room.data();
  room = readBytes(path, std::move(room));
  EXPECT_EQ(room, (std::vector<std::byte>{std::byte{'1'}, std::byte{0}, std::byte{'2'}}));
  EXPECT_EQ(room.data(), at);
  EXPECT_EQ(readBytes(folder.write("empty", "")).size(), 0U);
}

TEST(File, ThatCannotBeReadIsRefusedWithItsReason) {
  const TemporaryFolder folder;
  EXPECT_EQ(reasonOf(folder.path("missing")), "cannot be read: No such file or directory");
  EXPECT_EQ(reasonOf(folder.path()), "cannot be read: it is a folder");
  EXPECT_EQ(reasonOf("/dev/null"), "cannot be read: it is not a regular file");
}

// A file with holes takes no place on the disk, and needs as much memory as any other.
TEST(File, LargerThanTheMemoryIsRefused) {
  const TemporaryFolder folder;
  const std::string path = folder.write("large", "");
  constexpr std::uintmax_t size = std::uintmax_t{1} << 42U;
  std::error_code error;
  std::filesystem::resize_file(path, size, error);
  if (error) {
    GTEST_SKIP() << "the file system takes no file of 4 TiB: " << error.message();
  }
  EXPECT_EQ(reasonOf(path), "cannot be read: not enough memory for its 4398046511104 bytes");
}

}  // namespace
}  // namespace orvantis::toolkit
