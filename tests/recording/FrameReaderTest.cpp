#include <algorithm>
#include <atomic>
#include <cstdint>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "FrameFiles.h"
#include "recording/FrameReader.h"
#include "recording/ReadError.h"
#include "support/AllocationCounter.h"

namespace orvantis::toolkit {
namespace {

using testing::Point;
using testing::raw;

const std::vector<Point> twoPoints = {{1, 2, 3}, {4.5, -5, 6}};

struct Sample {
  std::string name;
  std::string bytes;
};

std::string las() {
  std::string file(227, '\0');
  file.replace(0, 4, "LASF");
  file.replace(24, 2, "\x01\x02");
  file.replace(94, 6, raw(std::uint16_t{227}) + raw(std::uint32_t{227}));
  file.replace(105, 6, raw(std::uint16_t{20}) + raw(std::uint32_t{2}));
  file.replace(131, 24, raw<double>({0.5, 0.5, 0.5}));
  for (const Point& point : twoPoints) {
    for (const double value : point) {
      file += raw(static_cast<std::int32_t>(2 * value));
    }
    file += "12345678";
  }
  return file;
}

// Each kind of file, with two points.
std::vector<Sample> samples() {
  const auto pcd = [](const std::string& data) {
    return "VERSION 0.7\nFIELDS x y z\nSIZE 4 4 4\nTYPE F F F\nWIDTH 2\nHEIGHT 1\nPOINTS 2\nDATA " + data +
           "\n";
  };
  const auto ply = [](const std::string& format, const std::string& elements) {
    return "ply\nformat " + format + " 1.0\n" + elements + "end_header\n";
  };
  const std::string floats = raw<float>({1, 2, 3, 4.5F, -5, 6});
  const std::string columns = raw<float>({1, 4.5F, 2, -5, 3, 6});
  const std::string vertex = "element vertex 2\nproperty float x\nproperty float y\nproperty float z\n";
  const std::string face = "element face 1\nproperty list uchar short i\n";
  const std::string listed = vertex + "property list uchar char l\n";
  return {
      {"binary.pcd", pcd("binary") + floats},
      {"ascii.pcd", pcd("ascii") + "1 2 3\n4.5 -5 6\n"},
      {"compressed.pcd",
       pcd("binary_compressed") + raw<std::uint32_t>({25, 24}) + static_cast<char>(23) + columns},
      {"ascii.ply", ply("ascii", face + vertex) + "2 0 1\n1 2 3\n4.5 -5 6\n"},
      {"little.ply", ply("binary_little_endian", face + vertex) + "\x02" + "abcd" + floats},
      {"big.ply",
       ply("binary_big_endian", face + vertex) + "\x02" + "abcd" + raw<float>({1, 2, 3, 4.5F, -5, 6}, true)},
      {"listed.ply", ply("binary_little_endian", listed) + floats.substr(0, 12) + "\x01" + "a" +
                         floats.substr(12) + "\x02" + "ab"},
      {"listed_ascii.ply", ply("ascii", listed) + "1 2 3 1 9\n4.5 -5 6 0\n"},
      {"points.xyz", "# site\n1 2 3\n4.5 -5 6\n"},
      {"points.csv", "t,x,y,z\n0,1,2,3\n0,4.5,-5,6\n"},
      {"points.pts", "2\n1 2 3 7\n4.5 -5 6 7\n"},
      {"points.bin", raw<float>({1, 2, 3, 9, 4.5F, -5, 6, 9})},
      {"points.las", las()},
  };
}

// The points, or none for a file that is refused with a place inside of it and a reason.
std::vector<Point> readOrRefuse(const Sample& sample) {
  FrameReader reader;
  try {
    return testing::pointsOf(
        reader.read(testing::bytesOf(sample.bytes), frameKindOf(sample.name).value()).points);
  } catch (const ReadError& error) {
    EXPECT_STRNE(error.what(), "");
    const auto lines = static_cast<std::uint64_t>(std::count(sample.bytes.begin(), sample.bytes.end(), '\n'));
    EXPECT_LE(error.place().line, lines + 1);
    EXPECT_LE(error.place().byte, sample.bytes.size());
    return {};
  }
}

TEST(FrameReader, TheEndingTellsTheKind) {
  EXPECT_EQ(frameKindOf("a.pcd"), FrameKind::Pcd);
  EXPECT_EQ(frameKindOf("A.PLY"), FrameKind::Ply);
  for (const std::string name : {"a.xyz", "a.txt", "a.csv", "b/a.PTS"}) {
    EXPECT_EQ(frameKindOf(name), FrameKind::Text) << name;
  }
  EXPECT_EQ(frameKindOf("a.bin"), FrameKind::Records);
  EXPECT_EQ(frameKindOf("a.pcd.bin"), FrameKind::Records);
  EXPECT_EQ(frameKindOf("a.las"), FrameKind::Las);
  EXPECT_EQ(frameKindOf("a.laz"), FrameKind::Las);
  EXPECT_EQ(frameKindOf("a.pcd.gz"), std::nullopt);
  EXPECT_EQ(frameKindOf("pcd"), std::nullopt);
  EXPECT_STREQ(nameOf(FrameKind::Pcd), "pcd");
  EXPECT_STREQ(nameOf(FrameKind::Las), "las");
}

TEST(FrameReader, APcdFileMayBeCalledBin) {
  for (const std::string begin : {"# .PCD v0.7\n", "", "VERSION 0.7\n"}) {
    const std::string file = begin + "FIELDS x y z\nSIZE 4 4 4\nTYPE F F F\nPOINTS 1\nDATA ascii\n1 2 3\n";
    EXPECT_EQ(testing::readPoints(file, FrameKind::Records), (std::vector<Point>{{1, 2, 3}}));
  }
}

TEST(FrameReader, AnEmptyFileIsNoFrame) {
  for (const FrameKind kind :
       {FrameKind::Pcd, FrameKind::Ply, FrameKind::Text, FrameKind::Records, FrameKind::Las}) {
    EXPECT_EQ(testing::refusal("", kind), "byte 0: the file is empty");
  }
}

TEST(FrameReader, OneReaderReadsAllKinds) {
  FrameReader reader;
  for (int round = 0; round < 2; ++round) {
    for (const Sample& sample : samples()) {
      const Frame frame = reader.read(testing::bytesOf(sample.bytes), frameKindOf(sample.name).value());
      EXPECT_EQ(testing::pointsOf(frame.points), twoPoints) << sample.name;
    }
  }
}

// With the thread sanitizer this finds what readers share.
TEST(FrameReader, ReadersOfSeveralThreadsDoNotMeet) {
  std::vector<std::thread> threads;
  std::atomic<int> numRead = 0;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&numRead] {
      FrameReader reader;
      for (const Sample& sample : samples()) {
        const Frame frame = reader.read(testing::bytesOf(sample.bytes), frameKindOf(sample.name).value());
        numRead += testing::pointsOf(frame.points) == twoPoints ? 1 : 0;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(numRead, 4 * static_cast<int>(samples().size()));
}

// A row of text that is cut inside its last number is another number, which nobody can tell.
TEST(FrameReader, FilesCutAtAnyByteGiveWholePointsOrAReason) {
  for (const Sample& sample : samples()) {
    for (std::size_t size = 0; size < sample.bytes.size(); ++size) {
      SCOPED_TRACE(sample.name + " cut after " + std::to_string(size) + " bytes");
      std::vector<Point> points = readOrRefuse({sample.name, sample.bytes.substr(0, size)});
      ASSERT_LE(points.size(), 2U);
      const bool isText = frameKindOf(sample.name) == FrameKind::Text || sample.name.find("ascii") == 0;
      if (isText && !points.empty() && sample.bytes[size] != '\n') {
        points.pop_back();
      }
      EXPECT_TRUE(std::equal(points.begin(), points.end(), twoPoints.begin()));
    }
  }
}

// Whatever a header says of sizes: no more memory than four times the file, and a reason.
TEST(FrameReader, SizesInHeadersAreNotTrusted) {
  const auto pcd = [](const std::string& size, const std::string& width, const std::string& data) {
    return "VERSION 0.7\nFIELDS x y z\nSIZE " + size + "\nTYPE F F F\nCOUNT 1 1 1\nWIDTH " + width +
           "\nHEIGHT 1\nPOINTS " + width + "\nDATA " + data;
  };
  const auto ply = [](const std::string& format, const std::string& count) {
    return "ply\nformat " + format + " 1.0\nelement vertex " + count +
           "\nproperty float x\nproperty float y\nproperty float z\nend_header\n" + std::string(24, '1');
  };
  std::string manyLas = las();
  manyLas.replace(107, 4, "\xFF\xFF\xFF\xFF");
  std::string farLas = las();
  farLas.replace(96, 4, "\xF0\xFF\xFF\xFF");
  std::vector<Sample> liars = {{"many.las", manyLas}, {"far.las", farLas}};
  for (const std::string count :
       {"1000000000", "4294967295", "18446744073709551615", "99999999999999999999"}) {
    liars.push_back({"binary.pcd", pcd("4 4 4", count, "binary\n" + std::string(24, 'a'))});
    liars.push_back({"ascii.pcd", pcd("4 4 4", count, "ascii\n1 2 3\n")});
    liars.push_back({"wide.pcd", pcd("4 " + count + " 4", "2", "binary\n" + std::string(24, 'a'))});
    liars.push_back({"packed.pcd", pcd("4 4 4", count,
                                       "binary_compressed\n" + raw<std::uint32_t>({25, 0xFFFFFFFF}) +
                                           std::string(25, '\x17'))});
    liars.push_back({"ascii.ply", ply("ascii", count)});
    liars.push_back({"little.ply", ply("binary_little_endian", count)});
    liars.push_back({"count.pts", count + "\n1 2 3\n"});
  }
  for (const Sample& liar : liars) {
    SCOPED_TRACE(liar.name);
    constexpr std::size_t forTexts = 1 << 14;
    const orvantis::testing::AllocationCounter counter;
    FrameReader reader;
    EXPECT_THROW(reader.read(testing::bytesOf(liar.bytes), frameKindOf(liar.name).value()), ReadError);
    EXPECT_LE(counter.bytes(), 4 * liar.bytes.size() + forTexts);
  }
}

// With the sanitizers this finds reads past the end.
TEST(FrameReader, DamagedFilesAreReadOrRefused) {
  std::mt19937 random(11);
  for (const Sample& sample : samples()) {
    for (int round = 0; round < 2000; ++round) {
      Sample damaged = sample;
      for (unsigned i = 0; i <= random() % 3; ++i) {
        // Digits make headers that lie, anything else breaks words.
        damaged.bytes[random() % damaged.bytes.size()] =
            static_cast<char>(random() % 2 == 0 ? '0' + random() % 10 : random() % 256);
      }
      if (random() % 4 == 0) {
        damaged.bytes.insert(random() % damaged.bytes.size(), 1, '9');
      }
      SCOPED_TRACE(sample.name + ", round " + std::to_string(round));
      EXPECT_LE(readOrRefuse(damaged).size(), damaged.bytes.size());
    }
  }
}

// Intensities 7 and 8 in place of z; in each kind of file the column is named in another letter case or
// place.
TEST(FrameReader, AnotherColumnIsReadInPlaceOfZ) {
  const auto pcd = [](const std::string& data) {
    return "VERSION 0.7\nFIELDS Intensity x y z\nSIZE 2 4 4 4\nTYPE U F F F\nWIDTH 2\nHEIGHT 1\nPOINTS "
           "2\nDATA " +
           data + "\n";
  };
  const auto row = [](std::uint16_t intensity, const std::vector<float>& point) {
    return raw(intensity) + raw(point);
  };
  const std::string vertex =
      "element vertex 2\nproperty float x\nproperty float y\nproperty uchar intensity\nproperty float z\n";
  const std::string records = raw<float>({1, 2, 3, 7, 4.5F, -5, 6, 8});
  const std::vector<Sample> files = {
      {"a.pcd", pcd("binary") + row(7, {1, 2, 3}) + row(8, {4.5F, -5, 6})},
      {"b.pcd", pcd("ascii") + "7 1 2 3\n8 4.5 -5 6\n"},
      {"c.ply", "ply\nformat ascii 1.0\n" + vertex + "end_header\n1 2 7 3\n4.5 -5 8 6\n"},
      {"d.ply", "ply\nformat binary_little_endian 1.0\n" + vertex + "end_header\n" + raw<float>({1, 2}) +
                    "\x07" + raw<float>({3, 4.5F, -5}) + "\x08" + raw<float>({6})},
      {"e.csv", "x,INTENSITY,y,z\n1,7,2,3\n4.5,8,-5,6\n"},
      {"f.bin", records},
  };
  FrameReader reader;
  for (const Sample& file : files) {
    const ColumnNames names = parseColumnNames("x,y,z,intensity");
    const Frame frame = reader.read(testing::bytesOf(file.bytes), *frameKindOf(file.name),
                                    file.name == "f.bin" ? names : ColumnNames(), {"x", "y", "intensity"});
    EXPECT_EQ(testing::pointsOf(frame.points), (std::vector<Point>{{1, 2, 7}, {4.5, -5, 8}})) << file.name;
  }
  EXPECT_THROW(reader.read(testing::bytesOf(files[4].bytes), FrameKind::Text, {}, {"x", "y", "ring"}),
               ReadError);
}

}  // namespace
}  // namespace orvantis::toolkit
