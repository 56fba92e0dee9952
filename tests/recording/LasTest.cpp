#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "FrameFiles.h"

namespace orvantis::toolkit {
namespace {

using testing::Point;
using testing::raw;

struct Las {
  int minor = 2;
  std::uint16_t headerSize = 227;
  std::uint32_t begin = 227;
  std::uint8_t format = 0;
  std::uint16_t length = 20;
  std::uint32_t points = 2;
  std::uint64_t longPoints = 0;
  std::vector<double> scale = {0.5, 0.25, 2};
  std::vector<double> offset = {100, 0, -1};

  std::string text() const {
    std::string header(minor <= 2 ? 227 : minor == 3 ? 235 : 375, '\0');
    const auto put = [&](std::size_t at, const std::string& bytes) {
      header.replace(at, bytes.size(), bytes);
    };
    put(0, "LASF");
    put(24, raw(std::uint8_t{1}) + raw(static_cast<std::uint8_t>(minor)));
    put(94, raw(headerSize) + raw(begin));
    put(104, raw(format) + raw(length) + raw(points));
    put(131, raw(scale) + raw(offset));
    if (minor == 4) {
      put(247, raw(longPoints));
    }
    return header;
  }
};

// A file of version 1.4, which counts its points in a long number.
Las longCounted() {
  Las las;
  las.minor = 4;
  las.headerSize = 375;
  las.begin = 375;
  las.points = 0;
  las.longPoints = 2;
  return las;
}

std::string record(std::int32_t x, std::int32_t y, std::int32_t z, std::size_t length = 20) {
  return raw<std::int32_t>({x, y, z}) + std::string(length - 12, 'x');
}

std::string refused(const Las& las, const std::string& points = record(1, 2, 3) + record(4, 5, 6)) {
  return testing::refusal(las.text() + points, FrameKind::Las);
}

TEST(Las, RawNumbersAreScaledAndMoved) {
  const std::string file = Las().text() + record(1, 2, 3) + record(-2147483647 - 1, 0, -3);
  EXPECT_EQ(testing::readPoints(file, FrameKind::Las),
            (std::vector<Point>{{100.5, 0.5, 5}, {-1073741724, 0, -7}}));
  FrameReader reader;
  EXPECT_FALSE(testing::areFloats(reader.read(testing::bytesOf(file), FrameKind::Las).points));
}

TEST(Las, EachPointFormatHasItsColumns) {
  const std::vector<std::uint16_t> lengths = {20, 28, 26, 34, 57, 63, 30, 36, 38, 59, 67};
  for (std::uint8_t format = 0; format <= 10; ++format) {
    Las las;
    las.format = format;
    las.length = lengths[format];
    const std::string points = record(1, 2, 3, las.length) + record(4, 5, 6, las.length);
    EXPECT_EQ(testing::readPoints(las.text() + points, FrameKind::Las),
              (std::vector<Point>{{100.5, 0.5, 5}, {102, 1.25, 11}}));
    --las.length;
    EXPECT_EQ(refused(las, points), "byte 105: a record has " + std::to_string(las.length) +
                                        " bytes; one of point format " + std::to_string(format) + " has " +
                                        std::to_string(las.length + 1) + " at least");
  }
}

TEST(Las, ColumnsAreTold) {
  Las las;
  las.format = 3;
  las.length = 37;
  las.points = 0;
  FrameReader reader;
  const std::string file = las.text();
  const Frame frame = reader.read(testing::bytesOf(file), FrameKind::Las);
  EXPECT_EQ(sizeOf(frame.points), 0U);
  std::string text;
  for (const Column& column : frame.columns) {
    text += column.name + " " + nameOf(column.type) + " " + std::to_string(column.count) + ", ";
  }
  EXPECT_EQ(
      text,
      "x I4 1, y I4 1, z I4 1, intensity U2 1, returns U1 1, classification U1 1, scan_angle I1 1, user_data "
      "U1 1, source U2 1, gps_time F8 1, rgb U2 3, extra_bytes U1 3, ");
}

TEST(Las, Version14HasALongCount) {
  Las las = longCounted();
  const std::string points = record(1, 2, 3) + record(4, 5, 6);
  EXPECT_EQ(testing::readPoints(las.text() + points, FrameKind::Las).size(), 2U);
  las.points = 2;
  EXPECT_EQ(testing::readPoints(las.text() + points, FrameKind::Las).size(), 2U);
  las.points = 1;
  EXPECT_EQ(refused(las, points), "byte 247: the header contradicts itself: 2 points here, 1 at byte 107");
  las.points = 0;
  las.longPoints = ~std::uint64_t{0};
  EXPECT_EQ(refused(las, points),
            "byte 415: the file ends inside point 3 of the 18446744073709551615 points of "
            "its header, each of 20 bytes");
}

TEST(Las, WhatFollowsThePointsIsLegal) {
  EXPECT_EQ(refused(Las(), record(1, 2, 3) + record(4, 5, 6) + "tail"), "");
}

TEST(Las, CompressedPointsAreRefusedWithWhatToDo) {
  Las las;
  las.format = 0x83;
  EXPECT_EQ(refused(las),
            "byte 104: the points are compressed (LAZ), which is not read; decompress the file "
            "first, for example with \"laszip -i file.laz -o file.las\"");
  las.format = 0x40;
  EXPECT_EQ(refused(las).substr(0, 35), "byte 104: the points are compressed");
  las.format = 11;
  EXPECT_EQ(refused(las), "byte 104: the point format is 11; 0 to 10 are read");
}

TEST(Las, HeadersThatAreNotUnderstoodAreRefused) {
  EXPECT_EQ(testing::refusal("LASX" + std::string(400, '\0'), FrameKind::Las),
            "byte 0: a LAS file begins with \"LASF\", not with \"LASX\"");
  EXPECT_EQ(testing::refusal("LA", FrameKind::Las),
            "byte 0: a LAS file begins with \"LASF\", not with \"LA\"");
  Las las;
  las.minor = 5;
  EXPECT_EQ(refused(las), "byte 24: the version is 1.5; 1.0 to 1.4 are read");
  las = Las();
  std::string other = las.text();
  other[24] = 2;
  EXPECT_EQ(testing::refusal(other, FrameKind::Las), "byte 24: the version is 2.2; 1.0 to 1.4 are read");
  las.headerSize = 226;
  EXPECT_EQ(refused(las),
            "byte 94: the header has 226 bytes and the points begin at byte 227; a header of version "
            "1.2 has 227 at least");
  las = Las();
  las.begin = 226;
  EXPECT_EQ(refused(las),
            "byte 94: the header has 227 bytes and the points begin at byte 226; a header of version "
            "1.2 has 227 at least");
}

TEST(Las, WhatIsCutIsRefused) {
  const Las las;
  EXPECT_EQ(testing::refusal(las.text().substr(0, 226), FrameKind::Las),
            "byte 226: the file ends inside its header of 227 bytes");
  Las late;
  late.minor = 4;
  EXPECT_EQ(testing::refusal(late.text().substr(0, 374), FrameKind::Las),
            "byte 374: the file ends inside its header of 375 bytes");
  EXPECT_EQ(refused(las, record(1, 2, 3) + std::string(19, 'x')),
            "byte 266: the file ends inside point 2 of the 2 points of its header, each of 20 bytes");
  Las far;
  far.begin = 4000000000U;
  EXPECT_EQ(refused(far),
            "byte 267: the file ends inside point 1 of the 2 points of its header, each of 20 bytes");
}

TEST(Las, ScalesThatAreNoNumbersAreRefused) {
  Las las;
  las.scale[1] = 0;
  EXPECT_EQ(refused(las), "byte 139: the scale of y is 0");
  las.scale[1] = std::numeric_limits<double>::infinity();
  EXPECT_EQ(refused(las), "byte 139: the scale of y is not a finite number");
  las = Las();
  las.offset[2] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(refused(las), "byte 171: the offset of z is not a finite number");
}

TEST(Las, OtherColumnsAreAsTheFileHasThem) {
  std::string points = record(1, 2, 3) + record(4, 5, 6);
  points.replace(12, 2, raw(std::uint16_t{40000}));
  points.replace(32, 2, raw(std::uint16_t{7}));
  const std::string file = Las().text() + points;
  FrameReader reader;
  const Frame frame = reader.read(testing::bytesOf(file), FrameKind::Las, {}, {"x", "y", "intensity"});
  EXPECT_EQ(testing::pointsOf(frame.points), (std::vector<Point>{{1, 2, 40000}, {4, 5, 7}}));
  EXPECT_EQ(testing::pointsOf(reader.read(testing::bytesOf(file), FrameKind::Las).points),
            (std::vector<Point>{{100.5, 0.5, 5}, {102, 1.25, 11}}));
}

TEST(Las, AColumnBehindThreeColoursIsFound) {
  Las las = longCounted();
  las.format = 8;
  las.length = 38;
  las.longPoints = 1;
  std::string point = record(1, 2, 3, 38);
  point.replace(36, 2, raw(std::uint16_t{4660}));
  const std::string file = las.text() + point;
  FrameReader reader;
  const Frame frame = reader.read(testing::bytesOf(file), FrameKind::Las, {}, {"x", "y", "near_infrared"});
  EXPECT_EQ(testing::pointsOf(frame.points), (std::vector<Point>{{1, 2, 4660}}));
}

}  // namespace
}  // namespace orvantis::toolkit
