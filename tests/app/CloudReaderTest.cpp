#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "CloudReader.h"
#include "Console.h"
#include "support/TemporaryFolder.h"

namespace orvantis::app {
namespace {

using testing::TemporaryFolder;

const float nan = std::numeric_limits<float>::quiet_NaN();

std::string floats(const std::vector<float>& values) {
  std::string bytes;
  for (const float value : values) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    for (unsigned shift = 0; shift < 32; shift += 8) {
      bytes += static_cast<char>(bits >> shift & 0xFFU);
    }
  }
  return bytes;
}

std::string number(std::uint32_t value) {
  std::string bytes;
  for (unsigned shift = 0; shift < 32; shift += 8) {
    bytes += static_cast<char>(value >> shift & 0xFFU);
  }
  return bytes;
}

std::string pcd(const std::string& points, const std::string& data, const std::string& fields = "x y z",
                const std::string& size = "4 4 4", const std::string& type = "F F F",
                const std::string& count = "1 1 1") {
  return "# .PCD v0.7\nVERSION 0.7\nFIELDS " + fields + "\nSIZE " + size + "\nTYPE " + type + "\nCOUNT " +
         count + "\nWIDTH " + points + "\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " + points + "\nDATA " +
         data + "\n";
}

std::string ply(const std::string& header, const std::string& data, const std::string& format = "ascii") {
  return "ply\nformat " + format + " 1.0\n" + header + "end_header\n" + data;
}

const std::string xyzProperties = "property float x\nproperty float y\nproperty float z\n";

// Literal runs of the compression that PCD files use: a length less one, then the bytes.
std::string compressed(const std::string& bytes) {
  std::string result;
  for (std::size_t at = 0; at < bytes.size(); at += 32) {
    const std::string run = bytes.substr(at, 32);
    result += static_cast<char>(run.size() - 1);
    result += run;
  }
  return result;
}

class CloudReader : public ::testing::Test {
 protected:
  Cloud read(const std::string& name, const std::string& content) {
    return readCloud(folder_.write(name, content));
  }

  // The reason alone: the path comes first in every text.
  std::string failure(const std::string& name, const std::string& content) {
    return failureOfFile(folder_.write(name, content));
  }
  static std::string failureOfFile(const std::string& path) {
    try {
      readCloud(path);
    } catch (const Failure& error) {
      const std::string text = error.what();
      const std::string start = path + ": cannot be read: ";
      EXPECT_EQ(text.find(start), 0U) << text;
      return text.substr(std::min(start.size(), text.size()));
    }
    return "";
  }

  TemporaryFolder folder_;
};

void expectPoints(const Cloud& cloud, const std::vector<Eigen::Vector3d>& expected) {
  ASSERT_EQ(cloud.size(), expected.size());
  for (std::size_t i = 0; i < cloud.size(); ++i) {
    for (int axis = 0; axis < 3; ++axis) {
      if (std::isnan(expected[i][axis])) {
        EXPECT_TRUE(std::isnan(cloud[i][axis])) << "point " << i;
      } else {
        EXPECT_EQ(cloud[i][axis], expected[i][axis]) << "point " << i;
      }
    }
  }
}

const std::vector<Eigen::Vector3d> twoPoints = {{1.0, 2.0, 3.0}, {4.5, -5.0, nan}};

TEST_F(CloudReader, ReadsEveryKindOfPcd) {
  expectPoints(read("ascii.pcd", pcd("2", "ascii") + "1 2 3\n4.5 -5 nan\n"), twoPoints);
  expectPoints(read("binary.pcd", pcd("2", "binary") + floats({1, 2, 3, 4.5F, -5, nan})), twoPoints);
  const std::string columns = floats({1, 4.5F, 2, -5, 3, nan});
  const std::string block = compressed(columns);
  expectPoints(read("compressed.pcd", pcd("2", "binary_compressed") +
                                          number(static_cast<std::uint32_t>(block.size())) +
                                          number(static_cast<std::uint32_t>(columns.size())) + block),
               twoPoints);
}

TEST_F(CloudReader, FieldsOfAPcdMayComeInAnyOrderAmongOthers) {
  expectPoints(
      read("order.pcd", pcd("1", "binary", "intensity z normal x y", "4 4 4 4 4", "F F F F F", "1 1 3 1 1") +
                            floats({9, 3, 8, 8, 8, 1, 2})),
      {{1.0, 2.0, 3.0}});
  expectPoints(read("order_ascii.pcd",
                    pcd("1", "ascii", "intensity z normal x y", "4 4 4 4 4", "F F F F F", "1 1 3 1 1") +
                        "9 3 8 8 8 1 2\n"),
               {{1.0, 2.0, 3.0}});
}

TEST_F(CloudReader, BytesAfterTheLastPointOfAPcdAreLegal) {
  expectPoints(read("tail.pcd", pcd("1", "binary") + floats({1, 2, 3}) + std::string(3906, 'x')),
               {{1.0, 2.0, 3.0}});
  expectPoints(read("tail_ascii.pcd", pcd("1", "ascii") + "1 2 3\n\n4 5 6\n"), {{1.0, 2.0, 3.0}});
}

TEST_F(CloudReader, LineEndsOfOtherSystemsAreLegal) {
  std::string text = pcd("1", "ascii") + "1 2 3\n";
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
    text.replace(at, 1, "\r\n");
  }
  expectPoints(read("dos.pcd", text), {{1.0, 2.0, 3.0}});
}

TEST_F(CloudReader, AnEmptyPcdFrameIsLegal) {
  expectPoints(read("none.pcd", pcd("0", "binary")), {});
}

TEST_F(CloudReader, ReadsPlyXyzAndRecords) {
  expectPoints(read("text.ply", ply("element vertex 2\n" + xyzProperties, "1 2 3\n4.5 -5 nan\n")), twoPoints);
  expectPoints(read("binary.ply", ply("element vertex 2\n" + xyzProperties, floats({1, 2, 3, 4.5F, -5, nan}),
                                      "binary_little_endian")),
               twoPoints);
  expectPoints(read("points.xyz", "# site\n1 2 3\n\n4.5 -5 nan 7\n"), twoPoints);
  expectPoints(read("points.bin", floats({1, 2, 3, 0.5F, 4.5F, -5, nan, 0})), twoPoints);
}

TEST_F(CloudReader, TheEndingIsReadInAnyLetterCase) {
  expectPoints(read("POINTS.XYZ", "1 2 3\n"), {{1.0, 2.0, 3.0}});
}

TEST_F(CloudReader, WhatIsNoFrameIsRefused) {
  EXPECT_EQ(failureOfFile(folder_.path("missing.pcd")), "No such file or directory");
  EXPECT_EQ(failureOfFile(folder_.path()), "it is a folder");
  EXPECT_EQ(failure("points.las", "x"), "unknown kind of file; .pcd, .ply, .xyz and .bin are read");
  for (const std::string name : {"a.pcd", "a.ply", "a.xyz", "a.bin"}) {
    EXPECT_EQ(failure(name, ""), "the file is empty") << name;
  }
}

TEST_F(CloudReader, TruncatedRecordsAreRefused) {
  EXPECT_EQ(
      failure("a.bin", std::string(39, 'x')),
      "ends inside point 2: 39 bytes are no whole number of 16-byte records (float32 x, y, z, intensity)");
}

TEST_F(CloudReader, TruncatedPcdFilesAreRefused) {
  EXPECT_EQ(failure("a.pcd", pcd("2", "binary") + std::string(23, 'x')),
            "too short for the 2 points of its header");
  EXPECT_EQ(failure("a.pcd", pcd("3", "ascii") + "1 2 3\n4 5 6\n"), "ends after 2 of 3 points");
  EXPECT_EQ(failure("a.pcd", pcd("2", "ascii") + "1 2 3\n4 5\n"), "point 1 is not 3 numbers");
  EXPECT_EQ(failure("a.pcd", pcd("2", "binary_compressed") + "abc"),
            "too short for the 2 points of its header");
  EXPECT_EQ(failure("a.pcd", pcd("2", "binary_compressed") + number(25) + number(24) + "abc"),
            "too short for the 2 points of its header");
  EXPECT_EQ(failure("a.pcd", "VERSION 0.7\nFIELDS x y z\n"), "it has no PCD header with a DATA line");
}

TEST_F(CloudReader, HeadersThatPromiseTooMuchAreRefused) {
  EXPECT_EQ(failure("a.pcd", pcd("4000000000", "binary") + std::string(1000, 'x')),
            "too short for the 4000000000 points of its header");
  EXPECT_EQ(failure("a.pcd", pcd("99999999999999999999", "binary")),
            "WIDTH is no whole number: 99999999999999999999");
  EXPECT_EQ(failure("a.pcd", pcd("18446744073709551615", "binary")),
            "WIDTH is too large: 18446744073709551615");
  // Larger than the block: such a header made the reader read past its memory.
  EXPECT_EQ(
      failure("a.pcd", pcd("200000", "binary_compressed") + number(25) + number(24) + std::string(25, 'x')),
      "its compressed block of 24 bytes does not hold the 200000 points of its header");
  EXPECT_EQ(failure("a.pcd", pcd("100000000", "binary_compressed") + number(3) + number(1200000000) + "abc"),
            "too short for the 100000000 points of its header");
  EXPECT_EQ(failure("a.ply", ply("element vertex 4000000000\n" + xyzProperties, "1 2 3\n")),
            "too short for the 4000000000 elements \"vertex\" of its header");
}

TEST_F(CloudReader, HeadersThatContradictThemselvesAreRefused) {
  std::string text = pcd("2", "binary") + std::string(24, 'x');
  text.replace(text.find("HEIGHT 1"), 8, "HEIGHT 2");
  EXPECT_EQ(failure("a.pcd", text), "its header contradicts itself: WIDTH 2 times HEIGHT 2 are not POINTS 2");
  EXPECT_EQ(failure("a.pcd", pcd("1", "binary", "x y z", "4 4")),
            "SIZE does not have a value for each of the 3 fields");
  EXPECT_EQ(failure("a.pcd", pcd("1", "text") + "1 2 3\n"),
            "DATA is neither ascii, binary nor binary_compressed: text");
}

TEST_F(CloudReader, PcdFieldsThatCannotBeReadAreNamed) {
  EXPECT_EQ(failure("a.pcd", pcd("1", "binary", "X Y Z") + floats({1, 2, 3})), "it has no field \"x\"");
  EXPECT_EQ(failure("a.pcd", pcd("1", "binary", "x y z", "8 8 8") + std::string(24, 'x')),
            "field \"x\" is of TYPE F, SIZE 8, COUNT 1, which is not read; one float of 4 bytes is");
  EXPECT_EQ(failure("a.pcd", pcd("1", "ascii") + "1 two 3\n"), "point 0 is not 3 numbers");
}

TEST_F(CloudReader, DamagedCompressionIsRefused) {
  // A reference to bytes before the first one.
  EXPECT_NE(failure("a.pcd", pcd("2", "binary_compressed") + number(8) + number(24) +
                                 "\xE0\x10\x10\x20\x20\x20\x20\x20"),
            "");
}

TEST_F(CloudReader, FaultyPlyFilesAreRefused) {
  EXPECT_EQ(failure("a.ply", "plain text\n"), "does not begin with \"ply\"");
  EXPECT_EQ(failure("a.ply", "ply\nformat ascii 1.0\n"), "the header has no \"end_header\"");
  EXPECT_EQ(failure("a.ply", ply("", "")), "it holds no vertices");
  EXPECT_EQ(failure("a.ply", ply("element vertex 1\nproperty float x\nproperty float y\n", "1 2\n")),
            "its vertices have no property \"z\"");
  EXPECT_EQ(failure("a.ply", ply("element vertex 1\nproperty float x\nproperty float y\nelement face 1\n"
                                 "property float z\n",
                                 "1 2\n3\n")),
            "its vertices have no property \"z\"");
  EXPECT_NE(failure("a.ply", ply("element vertex 3\n" + xyzProperties, "1 2 3\n4 5\n")), "");
  EXPECT_NE(failure("a.ply",
                    ply("element vertex 3\n" + xyzProperties, std::string(35, 'x'), "binary_little_endian")),
            "");
}

TEST_F(CloudReader, FaultyXyzFilesAreRefused) {
  EXPECT_EQ(failure("a.xyz", "1 2 3\n4 5\n"), "line 2 does not begin with three numbers");
  EXPECT_EQ(failure("a.xyz", "x y z\n1 2 3\n"), "line 1 does not begin with three numbers");
  EXPECT_EQ(failure("a.xyz", "\n# nothing\n"), "no line holds a point");
}

// One small file of each kind, whole.
std::vector<std::pair<std::string, std::string>> wholeFiles() {
  const std::string columns = floats({1, 4.5F, 2, -5, 3, nan});
  const std::string block = compressed(columns);
  const std::string face = "element face 2\nproperty list uchar int vertex_indices\n";
  const std::string faces = std::string("\x02") + number(0) + number(1) + std::string("\x01") + number(0);
  return {
      {"a.pcd", pcd("2", "binary") + floats({1, 2, 3, 4.5F, -5, nan})},
      {"b.pcd", pcd("2", "binary_compressed") + number(static_cast<std::uint32_t>(block.size())) +
                    number(static_cast<std::uint32_t>(columns.size())) + block},
      {"c.pcd", pcd("2", "ascii") + "1 2 3\n4.5 -5 nan\n"},
      {"d.ply", ply("element vertex 2\n" + xyzProperties + face, floats({1, 2, 3, 4.5F, -5, 6}) + faces,
                    "binary_little_endian")},
      {"e.ply", ply("element vertex 2\n" + xyzProperties + face, "1 2 3\n4.5 -5 6\n2 0 1\n1 0\n")},
      {"f.xyz", "1 2 3\n4.5 -5 nan\n"},
      {"g.bin", floats({1, 2, 3, 4, 5, 6, 7, 8})},
  };
}

// The number of points, or none for a file that is refused; anything else ends the test.
std::optional<std::size_t> pointsOf(const std::string& path) {
  try {
    return readCloud(path).size();
  } catch (const Failure&) {
    return std::nullopt;
  }
}

TEST_F(CloudReader, FilesCutAtAnyByteAreReadOrRefused) {
  for (const auto& [name, content] : wholeFiles()) {
    EXPECT_EQ(pointsOf(folder_.write(name, content)), 2U) << name;
    for (std::size_t size = 0; size < content.size(); ++size) {
      const auto points = pointsOf(folder_.write(name, content.substr(0, size)));
      EXPECT_LE(points.value_or(0), 2U) << name << " cut after " << size << " bytes";
    }
  }
}

// With the sanitizers this finds reads past the end.
TEST_F(CloudReader, DamagedFilesAreReadOrRefused) {
  std::mt19937 random(11);
  for (const auto& [name, content] : wholeFiles()) {
    for (int round = 0; round < 400; ++round) {
      std::string damaged = content;
      for (unsigned i = 0; i <= random() % 3; ++i) {
        const std::size_t at = random() % damaged.size();
        // Digits make headers that lie, anything else breaks words.
        damaged[at] = static_cast<char>(random() % 2 == 0 ? '0' + random() % 10 : random() % 256);
      }
      SCOPED_TRACE(name + ", round " + std::to_string(round));
      const auto points = pointsOf(folder_.write(name, damaged));
      EXPECT_LE(points.value_or(0), damaged.size());
    }
  }
}

}  // namespace
}  // namespace orvantis::app
