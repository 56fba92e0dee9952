// What the readers of frames and tracks say about files that lie, end early, or cannot be read to their end.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/stat.h>

#include "CloudCheck.h"
#include "CloudReader.h"
#include "Console.h"
#include "files/File.h"
#include "recording/TrackReader.h"
#include "support/TemporaryFolder.h"

namespace orvantis::app {
namespace {

using testing::TemporaryFolder;

// The reason alone, without the path; empty when the file is read.
std::string refusal(const std::string& path) {
  const std::string start = path + ": cannot be read: ";
  try {
    readCloud(path);
  } catch (const Failure& failure) {
    const std::string text = failure.what();
    EXPECT_EQ(text.substr(0, start.size()), start);
    return text.substr(std::min(start.size(), text.size()));
  }
  return "";
}

std::string refusal(const std::string& name, const std::string& content) {
  const TemporaryFolder folder;
  return refusal(folder.write(name, content));
}

// The lines of a PCD file that are not under test; each replaces one of a small good file.
std::string pcd(const std::string& fields, const std::string& size, const std::string& type,
                const std::string& count, const std::string& rest) {
  return "VERSION 0.7\nFIELDS " + fields + "\nSIZE " + size + "\nTYPE " + type + "\nCOUNT " + count +
         "\nWIDTH 1\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS 1\nDATA " + rest;
}

TEST(BrokenPcd, SomeOfTheNormalsAreRefused) {
  const std::string reason = R"(it has only some of the fields "normal_x", "normal_y" and "normal_z")";
  EXPECT_EQ(refusal("a.pcd", pcd("x y z normal_x normal_z", "4 4 4 4 4", "F F F F F", "1 1 1 1 1",
                                 "ascii\n1 2 3 0 1\n")),
            reason);
  EXPECT_EQ(refusal("a.pcd", pcd("x y z normal_y normal_y normal_y", "4 4 4 4 4 4", "F F F F F F",
                                 "1 1 1 1 1 1", "binary\n" + std::string(24, 'x'))),
            reason);
  EXPECT_EQ(refusal("a.pcd", pcd("x y z normal_x normal_y normal_z", "4 4 4 4 4 4", "F F F F F F",
                                 "1 1 1 1 1 1", "ascii\n1 2 3 0 0 1\n")),
            "");
}

TEST(BrokenPcd, FieldsWithoutValuesAreRefused) {
  EXPECT_EQ(refusal("a.pcd", pcd("x y z rgb", "4 4 4 4", "F F F F", "1 1 1 0", "ascii\n1 2 3\n")),
            R"(field "rgb" has COUNT 0)");
}

TEST(BrokenPcd, AFieldThatIsThereTwiceIsRefused) {
  EXPECT_EQ(
      refusal("a.pcd", pcd("x y z x", "4 4 4 8", "F F F F", "1 1 1 1", "binary\n" + std::string(20, 'x'))),
      R"(it has the field "x" twice)");
}

TEST(BrokenPcd, LinesOutOfOrderAreRefused) {
  const std::string begin = "VERSION 0.7\nFIELDS x y z\n";
  const std::string end = "WIDTH 1\nHEIGHT 1\nPOINTS 1\nDATA ascii\n1 2 3\n";
  EXPECT_EQ(refusal("a.pcd", begin + end), "");
  EXPECT_EQ(refusal("a.pcd", "COLUMNS x y z\n" + end), "");
  EXPECT_EQ(refusal("a.pcd", begin + "COUNT 1 1 1\nSIZE 4 4 4\n" + end),
            "unexpected line in its header: SIZE 4 4 4");
  EXPECT_EQ(refusal("a.pcd", begin + "FIELDS x y z w\n" + end),
            "unexpected line in its header: FIELDS x y z w");
  EXPECT_EQ(refusal("a.pcd", begin + "POINTS 1\nHEIGHT 1\nWIDTH 1\nDATA ascii\n1 2 3\n"),
            "unexpected line in its header: HEIGHT 1");
}

TEST(BrokenPcd, LinesThatOnlyBeginLikeKnownOnesAreRefused) {
  const std::string begin = "VERSION 0.7\nFIELDS x y z\n";
  const std::string end = "WIDTH 1\nHEIGHT 1\nPOINTS 1\nDATA ascii\n1 2 3\n";
  EXPECT_EQ(refusal("a.pcd", begin + "POINTSX 9\n" + end), "unexpected line in its header: POINTSX 9");
  EXPECT_EQ(refusal("a.pcd", begin + "DATA\n" + end), "unexpected line in its header: DATA");
  EXPECT_EQ(refusal("a.pcd", begin + "\vPOINTS 9\n" + end), "its header is no text");
  EXPECT_EQ(refusal("a.pcd", begin + std::string("SIZE 4 4\0 4\n", 12) + end), "its header is no text");
  EXPECT_EQ(refusal("a.pcd", begin + "SENSOR 9\n" + end), "");
}

TEST(BrokenPcd, CoordinatesAreReadAsTheyStandOrRefused) {
  const auto ofType = [](const std::string& type, const std::string& row) {
    return refusal("a.pcd", pcd("x y z w", "4 4 4 4", type + " F", "1 1 1 1", "ascii\n" + row + "\n"));
  };
  const std::string reason = "point 0 is not 4 numbers";
  EXPECT_EQ(ofType("F F F", "+1 nan -inf 0"), "");
  EXPECT_EQ(ofType("F F F", "+-1 2 3 0"), reason);
  EXPECT_EQ(ofType("F F F", std::string("1 2 3 \0", 7)), reason);
  EXPECT_EQ(ofType("I U F", "-10 20 3 0"), "");
  EXPECT_EQ(ofType("I F F", "010 2 3 0"), reason);  // else 8
  EXPECT_EQ(ofType("I F F", "1.5 2 3 0"), reason);  // else 1
  EXPECT_EQ(ofType("F U F", "1 -2 3 0"), reason);   // else 2 to the 64th, less 2
  EXPECT_EQ(ofType("I F F", "9223372036854775808 2 3 0"), reason);
  EXPECT_EQ(ofType("D F F", "1 2 3 0"),  // else 0
            R"(field "x" is of TYPE D, SIZE 4, COUNT 1, which is not read; one float of 4 bytes is)");
}

TEST(BrokenPcd, MoreThanCanBeCountedIsRefused) {
  const TemporaryFolder folder;
  const std::string text =
      "FIELDS x y z\nSIZE 1 1 1\nTYPE I I I\nWIDTH 2147483648\nHEIGHT 1\nPOINTS 2147483648\nDATA ";
  const std::string binary = folder.write("binary.pcd", text + "binary\n");
  std::filesystem::resize_file(binary, 6'500'000'000);  // a hole: it takes no room on the disk
  EXPECT_EQ(refusal(binary), "it has too many points: 2147483648");

  const std::string block =
      "FIELDS x y z\nWIDTH 200000000\nHEIGHT 1\nPOINTS 200000000\nDATA binary_compressed\n";
  // 10,000,000 bytes that become 2,400,000,000.
  const std::string sizes("\x80\x96\x98\x00\x00\x18\x0d\x8f", 8);
  const std::string compressed = folder.write("compressed.pcd", block + sizes);
  std::filesystem::resize_file(compressed, block.size() + 8 + 10'000'000);
  EXPECT_EQ(refusal(compressed), "its compressed block of 2400000000 bytes is too large");
}

const std::string plyStart = "ply\nformat ascii 1.0\n";
const std::string plyVertex = "element vertex 1\nproperty float x\nproperty float y\nproperty float z\n";

TEST(BrokenPly, EachLineOfTheHeaderIsWhole) {
  const std::string end = "end_header\n1 2 3\n";
  EXPECT_EQ(refusal("a.ply", plyStart + "comment a b\nobj_info \n\n" + plyVertex + end), "");
  EXPECT_EQ(refusal("a.ply", plyStart + "comment\n" + plyVertex + end),
            "unexpected line in the header: comment");
  EXPECT_EQ(refusal("a.ply", plyStart + "comment comment\n" + plyVertex + end), "");
  EXPECT_EQ(refusal("a.ply", plyStart + plyVertex + "element\nface 1\n" + end),
            "unexpected line in the header: element");
  EXPECT_EQ(refusal("a.ply", plyStart + plyVertex + "element face 1 property\n" + end),
            "unexpected line in the header: element face 1 property");
  EXPECT_EQ(refusal("a.ply", plyStart + std::string("element \0 1\n", 12) + plyVertex + end),
            "the header is no text");
}

TEST(BrokenPly, TheHeaderEndsAsItBegins) {
  const std::string data("\0\0\x80\x3f\0\0\0\x40\0\0\x40\x40", 12);
  const std::string header = "\nformat binary_little_endian 1.0\n" + plyVertex;
  EXPECT_EQ(refusal("a.ply", "ply" + header + "end_header\n" + data), "");
  EXPECT_EQ(refusal("a.ply", "ply\r" + header + "end_header\r\n" + data), "");
  EXPECT_EQ(refusal("a.ply", "ply" + header + "end_header\r\n" + data),
            R"(unexpected line in the header: end_header\x0d)");
  EXPECT_EQ(refusal("a.ply", "ply\r" + header + "end_header\n" + data),
            "unexpected line in the header: end_header");
  EXPECT_EQ(refusal("a.ply", "ply" + header + "end_header \n" + data),
            "unexpected line in the header: end_header ");
}

TEST(BrokenPly, ElementsThatNoDataCanHoldAreRefused) {
  // Counted one by one, these would take years.
  EXPECT_EQ(refusal("a.ply", "ply\nformat binary_little_endian 1.0\nelement nothing 9000000000000000000\n" +
                                 plyVertex + "end_header\n" + std::string(12, 'x')),
            R"(too short for the 9000000000000000000 elements "nothing" of its header)");
  EXPECT_EQ(refusal("a.ply", plyStart + "element face 1\nproperty list float int vertices\n" + plyVertex +
                                 "end_header\n0\n1 2 3\n"),
            "the length of a list is of type float");
}

TEST(BrokenXyz, ALineThatIsTooLongIsNamed) {
  EXPECT_EQ(refusal("a.xyz", "1 2 3\n4 5 6 #" + std::string(900, '.') + "\n"), "");
  EXPECT_EQ(refusal("a.xyz", "1 2 3\n4 5 6 #" + std::string(2000, '.') + "\n"),
            "line 2 is longer than 1021 bytes");
}

TEST(BrokenXyz, TheLongestLineIsRead) {
  const std::string row = "1 2 3 #";
  EXPECT_EQ(refusal("a.xyz", row + std::string(1021 - row.size(), '.') + "\n4 5 6\n"), "");
  EXPECT_EQ(refusal("a.xyz", row + std::string(1022 - row.size(), '.') + "\n4 5 6\n"),
            "line 1 is longer than 1021 bytes");
}

TEST(BrokenXyz, NumbersWithTwoSignsAreRefused) {
  EXPECT_EQ(refusal("a.xyz", "+1 2 3\n"), "");
  EXPECT_EQ(refusal("a.xyz", "+-1 2 3\n"), "line 1 does not begin with three numbers");
}

TEST(BrokenFrames, ReasonsSteerNoTerminal) {
  EXPECT_EQ(refusal("a.pcd", pcd("x y z", "4 4 4", "F F F", "1 1 1", "\033[2J\n")),
            R"(DATA is neither ascii, binary nor binary_compressed: \x1b[2J)");
}

TEST(BrokenFrames, AFileThatEndsWhileItIsReadIsRefused) {
  // Says that it has a page, and has a few bytes: as a file does that is cut short at this moment.
  const std::filesystem::path shorter = "/sys/devices/system/cpu/online";
  if (!std::filesystem::exists(shorter) || std::filesystem::file_size(shorter) % 16 != 0) {
    GTEST_SKIP() << shorter << " is not there";
  }
  const TemporaryFolder folder;
  std::filesystem::create_symlink(shorter, folder.path("a.bin"));
  const std::string read = std::to_string(testing::readAll(shorter).size());
  const std::string size = std::to_string(std::filesystem::file_size(shorter));
  EXPECT_EQ(refusal(folder.path("a.bin")), "ended after " + read + " of its " + size + " bytes");
}

// Can be opened, but reading its beginning is an error.
const std::string unreadable = "/proc/self/mem";

TEST(BrokenFrames, AReadErrorIsNotTheEndOfTheFile) {
  EXPECT_THROW(checkPcd(unreadable, 100), std::ios_base::failure);
  EXPECT_THROW(checkPly(unreadable, 100), std::ios_base::failure);
  EXPECT_THROW(checkXyz(unreadable), std::ios_base::failure);
}

std::unique_ptr<std::istream> opened(const std::string& path) {
  return std::make_unique<std::ifstream>(openFile(path));
}

TEST(BrokenTracks, AReadErrorIsNamed) {
  for (const TracksFormat format : {TracksFormat::Csv, TracksFormat::Kitti}) {
    try {
      TrackReader(opened(unreadable), unreadable, format).next();
      ADD_FAILURE();
    } catch (const Failure& failure) {
      EXPECT_STREQ(failure.what(), "/proc/self/mem: cannot be read: Input/output error");
    }
  }
}

const std::string csvHeader = "stamp,id,class,x,y,length,width,heading,zmin,zmax\n";

TEST(BrokenTracks, AFileThatEndsInsideARowIsRefusedAfterTheFramesBefore) {
  const TemporaryFolder folder;
  const std::string path =
      folder.write("tracks.csv", csvHeader + "0,1,a,0,0,1,1,0,0,1\n1,1,a,0,0,1,1,0,0,1\n2,1,a,0,0,1");
  TrackReader reader(opened(path), path, TracksFormat::Csv);
  EXPECT_EQ(reader.next()->stamp.count(), 0);
  try {
    reader.next();
    ADD_FAILURE();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.what(), path + ":4:11: the row has 6 columns instead of 10");
  }
}

TEST(BrokenTracks, SignalsWhileItWaitsForAPipeLoseNothing) {
  const TemporaryFolder folder;
  const std::string path = folder.path("tracks");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  struct sigaction previous {};
  struct sigaction action {};
  action.sa_handler = [](int) {};  // without SA_RESTART: the read that waits fails with EINTR
  sigaction(SIGUSR1, &action, &previous);

  std::vector<TrackFrame> frames;
  std::thread reading([&] {
    TrackReader reader(opened(path), path, TracksFormat::Csv);
    while (auto frame = reader.next()) {
      frames.push_back(std::move(*frame));
    }
  });
  constexpr int numRows = 30;
  {
    std::ofstream out(path);
    out << csvHeader;
    for (int i = 0; i < numRows; ++i) {
      out << i << ",1,a,0,0,1,1,0,0,1\n" << std::flush;
      std::this_thread::sleep_for(std::chrono::milliseconds(2));  // for the reader to come to wait
      pthread_kill(reading.native_handle(), SIGUSR1);
    }
  }
  reading.join();
  sigaction(SIGUSR1, &previous, nullptr);
  EXPECT_EQ(frames.size(), static_cast<std::size_t>(numRows));
}

}  // namespace
}  // namespace orvantis::app
