#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include <gtest/gtest.h>

#include "Program.h"
#include "input/FrameInput.h"
#include "session/Coordinates.h"
#include "support/TemporaryFolder.h"

namespace orvantis::testing {
namespace {

// FNV-1a, 64 bits.
std::uint64_t checksum(std::uint64_t hash, const std::string& bytes) {
  for (const char c : bytes) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  }
  return hash;
}

constexpr std::uint64_t start = 0xCBF29CE484222325U;

class Recording : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = std::make_unique<TemporaryFolder>();
    ASSERT_EQ(runProgram(CROSSING_RECORDING, {folder_->path()}).code, 0);
  }
  static void TearDownTestSuite() { folder_.reset(); }

  static std::string frame(int number) {
    return folder_->path("frame_" + std::string(number < 10 ? "0" : "") + std::to_string(number) + ".pcd");
  }

  static std::unique_ptr<TemporaryFolder> folder_;
};

std::unique_ptr<TemporaryFolder> Recording::folder_;

TEST_F(Recording, HasTheSameBytesOnEveryMachine) {
  std::uint64_t hash = start;
  for (int i = 0; i < 20; ++i) {
    hash = checksum(hash, readAll(frame(i)));
  }
  EXPECT_EQ(hash, 0x935649616B1BD156U);
  EXPECT_EQ(checksum(start, readAll(folder_->path("tracks.csv"))), 0x7F00E039E22E3BA7U);
  EXPECT_EQ(folder_->fileCount(), 21U);
}

TEST_F(Recording, FramesHoldAllBeamsAndMarkThoseThatDoNotReturn) {
  toolkit::FrameInput input({frame(0)}, {});
  const auto cloud = input.next();
  ASSERT_TRUE(cloud);
  const std::size_t size = toolkit::sizeOf(cloud->points);
  EXPECT_EQ(size, 28800U);
  std::size_t noReturns = 0;
  std::visit(
      [&](const auto& points) {
        for (std::size_t i = 0; i < size; ++i) {
          const toolkit::Coordinates p = toolkit::coordinatesOf(points, i);
          noReturns += p.isFinite() ? 0U : 1U;
        }
      },
      cloud->points);
  EXPECT_GT(noReturns, 0U);
  EXPECT_LT(noReturns, size / 2);
}

TEST_F(Recording, AFolderThatCannotBeWrittenToIsNamed) {
  const Outcome outcome = runProgram(CROSSING_RECORDING, {folder_->path("missing")});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err,
            "crossing_recording: " + folder_->path("missing/frame_00.pcd") + " cannot be written\n");
}

}  // namespace
}  // namespace orvantis::testing
