#include <csignal>
#include <filesystem>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files/AtomicFile.h"
#include "files/Failure.h"
#include "support/TemporaryFolder.h"

namespace orvantis::toolkit {
namespace {

using testing::readAll;
using testing::TemporaryFolder;

std::string failureOf(const std::string& path, const std::string& content) {
  try {
    writeWhole(path, content);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "";
}

TEST(AtomicFile, ReplacesTheOldContentAndLeavesNothingElse) {
  const TemporaryFolder folder;
  const std::string path = folder.write("plan.svg", "a much longer old content");
  writeWhole(path, "new");
  EXPECT_EQ(readAll(path), "new");
  EXPECT_EQ(folder.fileCount(), 1U);
}

TEST(AtomicFile, KeepsTheModeOfTheOldFileAndGivesANewOneTheUsers) {
  const TemporaryFolder folder;
  const std::string old = folder.write("old", "x");
  std::filesystem::permissions(old, std::filesystem::perms(0640));
  writeWhole(old, "y");
  EXPECT_EQ(std::filesystem::status(old).permissions(), std::filesystem::perms(0640));

  const mode_t mask = ::umask(0027);
  writeWhole(folder.path("new"), "y");
  ::umask(mask);
  EXPECT_EQ(std::filesystem::status(folder.path("new")).permissions(), std::filesystem::perms(0640));
}

TEST(AtomicFile, FollowsALink) {
  const TemporaryFolder folder;
  const std::string target = folder.write("target", "old");
  std::filesystem::create_symlink(target, folder.path("link"));
  writeWhole(folder.path("link"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
  EXPECT_EQ(readAll(target), "new");
}

TEST(AtomicFile, AFileThatCannotBeReplacedStaysAndNothingIsLeftBehind) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.path("plan.svg"));
  EXPECT_EQ(failureOf(folder.path("plan.svg"), "new"),
            folder.path("plan.svg") + ": cannot be written: Is a directory");
  EXPECT_EQ(folder.fileCount(), 1U);
  EXPECT_EQ(failureOf(folder.path("missing/plan.svg"), "new"),
            folder.path("missing/plan.svg") + ": cannot be written: No such file or directory");
}

// The disk fills up in the middle: the limit on the size of files stands in for it.
TEST(AtomicFile, ADiskThatFillsUpLeavesTheOldFileWhole) {
  const TemporaryFolder folder;
  const std::string path = folder.write("plan.svg", "old");
  const auto writeTooMuch = [&path] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {4096, 4096};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::_exit(failureOf(path, std::string(10000, 'x')) == path + ": cannot be written: File too large" ? 0 : 1);
  };
  EXPECT_EXIT(writeTooMuch(), ::testing::ExitedWithCode(0), "");
  EXPECT_EQ(readAll(path), "old");
  EXPECT_EQ(folder.fileCount(), 1U);
}

TEST(AtomicFile, IsThereOnlyWhenItIsCommitted) {
  const TemporaryFolder folder;
  const std::string path = folder.write("events.csv", "old");
  {
    AtomicFile abandoned(path);
    abandoned.append(std::string(1U << 20U, 'x'));
    EXPECT_EQ(folder.fileCount(), 2U);
  }
  EXPECT_EQ(folder.fileCount(), 1U);
  AtomicFile moved = [&path] {
    AtomicFile file(path);
    file.append("ne");
    return AtomicFile(std::move(file));
  }();
  moved.append("w");
  EXPECT_EQ(readAll(path), "old");
  moved.commit();
  EXPECT_EQ(readAll(path), "new");
  EXPECT_EQ(folder.fileCount(), 1U);
}

TEST(AtomicFile, ADeviceIsWrittenToAndNotReplaced) {
  EXPECT_EQ(failureOf("/dev/full", "new"), "/dev/full: cannot be written: No space left on device");
  EXPECT_EQ(failureOf("/dev/null", "new"), "");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

}  // namespace
}  // namespace orvantis::toolkit
