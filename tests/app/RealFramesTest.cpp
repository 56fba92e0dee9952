#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "Program.h"
#include "support/TemporaryFolder.h"

// Frames of real sensors, where they are at hand: they lie beside the source tree and do not belong to it.

namespace orvantis::testing {
namespace {

const std::filesystem::path data = std::filesystem::path(ORVANTIS_SOURCE_DIR) / "../shared/data";

// One box-shaped zone; its count is decided by comparisons alone.
constexpr const char* document =
    R"({"ZoneDetector":{"EvaluationField":[{"name":"f","index":0,"Zone":[{"name":"box","index":0,
    "shape":"rectangle","Rectangle":{"rotation":0,"Point":[{"x":2.0625,"y":-8.0625},{"x":30.0625,"y":8.0625}]},
    "zMin":-1.0625,"zMax":1.5625}]}]}})";

// Counts in records of four floats, apart from everything that the command uses.
std::uint64_t bruteForce(const std::string& bytes, std::size_t from, std::size_t points) {
  std::uint64_t count = 0;
  for (std::size_t i = 0; i < points; ++i) {
    std::array<float, 4> p{};
    std::memcpy(p.data(), bytes.data() + from + 16 * i, 16);
    count +=
        p[0] > 2.0625F && p[0] < 30.0625F && std::fabs(p[1]) < 8.0625F && p[2] >= -1.0625F && p[2] <= 1.5625F
            ? 1U
            : 0U;
  }
  return count;
}

void expectCount(const std::filesystem::path& frame, std::size_t from, std::size_t points) {
  const TemporaryFolder folder;
  const std::string site = folder.write("site.json", document);
  const std::uint64_t expected = bruteForce(readAll(frame.string()), from, points);
  EXPECT_GT(expected, 1000U);
  const std::string counted = "\"points\":" + std::to_string(points) + ",\"noReturns\":0";
  const std::string inside = "\"name\":\"box\",\"points\":" + std::to_string(expected) + ",";
  for (const std::string flag : {"--json", "--reference"}) {
    const Outcome outcome = zoneDetector({"run", "--json", flag, site, frame.string()});
    EXPECT_NE(outcome.out.find(counted), std::string::npos) << outcome.out << outcome.err;
    EXPECT_NE(outcome.out.find(inside), std::string::npos) << outcome.out << outcome.err;
  }
}

TEST(RealFrames, RecordsOfFloatsAreCountedAsByHand) {
  const auto frame = data / "frames/kitti_odometry/000000.bin";
  if (!std::filesystem::exists(frame)) {
    GTEST_SKIP() << frame << " is not there";
  }
  expectCount(frame, 0, 124668);
}

TEST(RealFrames, PcdFramesWithATailAreCountedAsByHand) {
  const auto frame = data / "frames/pcd_sequence/0000000000.pcd";
  if (!std::filesystem::exists(frame)) {
    GTEST_SKIP() << frame << " is not there";
  }
  const std::string bytes = readAll(frame.string());
  expectCount(frame, bytes.find("DATA binary\n") + 12, 119978);
}

TEST(RealFrames, FaultyFilesAreNamedWithTheReason) {
  const auto folder = data / "hostile";
  if (!std::filesystem::exists(folder)) {
    GTEST_SKIP() << folder << " is not there";
  }
  const TemporaryFolder own;
  const std::string site = own.write("site.json", document);
  const auto run = [&](const std::string& name) {
    return zoneDetector({"run", site, (folder / name).string()});
  };
  const auto expectFailure = [&](const std::string& name, const std::string& reason) {
    const Outcome outcome = run(name);
    EXPECT_EQ(outcome.code, 1);
    const std::string begin = "zone-detector: " + (folder / name).string() + reason;
    EXPECT_EQ(outcome.err.substr(0, begin.size()), begin);
  };
  expectFailure("missingheader.pcd", ":1: cannot be read: not a line of a PCD header: \"289814.15 ");
  expectFailure("no_vertex.ply", ":3: cannot be read: the header has no element \"vertex\"\n");
  expectFailure("sized_dims.ply", ":4: cannot be read: no column is named \"z\"; there are \"x\", \"y\", ");
  EXPECT_NE(run("utm17_space.pcd").out.find(": 10 points, 0 no returns"), std::string::npos)
      << run("utm17_space.pcd").out;
  EXPECT_NE(run("simple_text.ply").out.find(": 3 points, 0 no returns"), std::string::npos);
  EXPECT_NE(run("text_extradim.ply").out.find(": 1 point, 0 no returns"), std::string::npos);
}

}  // namespace
}  // namespace orvantis::testing
