#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "FrameFiles.h"

namespace orvantis::toolkit {
namespace {

using testing::Point;
using testing::raw;

std::vector<Point> read(const std::string& file) {
  return testing::readPoints(file, FrameKind::Ply);
}

std::string refused(const std::string& file) {
  return testing::refusal(file, FrameKind::Ply);
}

const std::string xyz = "property float x\nproperty float y\nproperty float z\n";
const std::string twoVertices = "element vertex 2\n" + xyz;
const std::string face = "element face 2\nproperty list uchar int vertex_indices\nproperty short tag\n";

std::string ply(const std::string& elements, const std::string& data, const std::string& format = "ascii") {
  return "ply\nformat " + format + " 1.0\n" + elements + "end_header\n" + data;
}

const std::vector<Point> twoPoints = {{1, 2, 3}, {4.5, -5, 6}};

// Two faces: one of two vertices, one of none.
std::string faces(bool isBigEndian) {
  return raw(std::uint8_t{2}) + raw<std::int32_t>({0, 1}, isBigEndian) + raw(std::int16_t{9}, isBigEndian) +
         raw(std::uint8_t{0}) + raw(std::int16_t{9}, isBigEndian);
}

TEST(Ply, EveryFormatIsRead) {
  EXPECT_EQ(read(ply(twoVertices, "1 2 3\n4.5 -5 6\n")), twoPoints);
  for (const bool isBigEndian : {false, true}) {
    EXPECT_EQ(read(ply(twoVertices, raw<float>({1, 2, 3, 4.5F, -5, 6}, isBigEndian),
                       isBigEndian ? "binary_big_endian" : "binary_little_endian")),
              twoPoints);
  }
}

TEST(Ply, LittleEndianFloatsAreSeenInTheFile) {
  const std::string file = ply(twoVertices, raw<float>({1, 2, 3, 4.5F, -5, 6}), "binary_little_endian");
  FrameReader reader;
  const Frame frame = reader.read(testing::bytesOf(file), FrameKind::Ply);
  EXPECT_EQ(std::get<filter::classify::PointsView<float>>(frame.points).x, file.data() + file.size() - 24);
}

TEST(Ply, AllNamesOfTypesAreKnown) {
  const std::string elements =
      "element vertex 1\nproperty char a\nproperty uchar b\nproperty short c\nproperty ushort d\nproperty "
      "int "
      "e\nproperty uint f\nproperty float g\nproperty double h\nproperty int8 i\nproperty uint8 j\nproperty "
      "int16 "
      "k\nproperty uint16 l\nproperty int32 m\nproperty uint32 n\nproperty int64 o\nproperty uint64 "
      "p\nproperty "
      "float32 x\nproperty float64 y\nproperty uint16 z\n";
  const std::string data = std::string(56, 'x') + raw(1.5F) + raw(2.25) + raw(std::uint16_t{65535});
  EXPECT_EQ(read(ply(elements, data, "binary_little_endian")), (std::vector<Point>{{1.5, 2.25, 65535}}));
  FrameReader reader;
  const std::string file = ply(elements, data, "binary_little_endian");
  std::string types;
  for (const Column& column : reader.read(testing::bytesOf(file), FrameKind::Ply).columns) {
    types += column.name + nameOf(column.type) + " ";
  }
  EXPECT_EQ(types, "aI1 bU1 cI2 dU2 eI4 fU4 gF4 hF8 iI1 jU1 kI2 lU2 mI4 nU4 oI8 pU8 xF4 yF8 zU2 ");
}

TEST(Ply, TextIsReadAsTheTypeThatItsPropertiesHave) {
  EXPECT_EQ(read(ply("element vertex 1\n" + xyz, "0.1 0.2 0.3\n"))[0][0], 0.1F);
  EXPECT_EQ(read(ply("element vertex 1\nproperty float x\nproperty double y\nproperty float z\n",
                     "0.1 0.2 0.3\n"))[0][0],
            0.1);
}

TEST(Ply, ElementsBeforeTheVerticesAreSkipped) {
  const std::string camera = "element camera 3\nproperty double f\nproperty uchar g\n";
  const std::string nothing = "element nothing 4000000000\n";
  EXPECT_EQ(
      read(ply(camera + face + nothing + twoVertices, "1 2\n\n1 2\n1 2\n2 0 1 9\n0 9\n1 2 3\n4.5 -5 6\n")),
      twoPoints);
  for (const bool isBigEndian : {false, true}) {
    EXPECT_EQ(
        read(ply(camera + face + nothing + twoVertices,
                 std::string(27, 'x') + faces(isBigEndian) + raw<float>({1, 2, 3, 4.5F, -5, 6}, isBigEndian),
                 isBigEndian ? "binary_big_endian" : "binary_little_endian")),
        twoPoints);
  }
}

TEST(Ply, WhatFollowsTheVerticesIsNotLookedAt) {
  EXPECT_EQ(read(ply(twoVertices + face, "1 2 3\n4.5 -5 6\n2 0 1 9\nwords\n")), twoPoints);
  EXPECT_EQ(read(ply(twoVertices + face, raw<float>({1, 2, 3, 4.5F, -5, 6}) + "x", "binary_little_endian")),
            twoPoints);
}

TEST(Ply, ListsAmongTheCoordinatesAreSkipped) {
  const std::string vertex =
      "element vertex 2\nproperty list ushort char tags\nproperty float z\nproperty list uchar double more\n"
      "property float X\nproperty float y\n";
  EXPECT_EQ(read(ply(vertex, "0 3 1 9 1 2\n2 7 7 6 0 4.5 -5\n")), twoPoints);
  for (const bool isBigEndian : {false, true}) {
    const std::string data = raw(std::uint16_t{0}) + raw(3.0F, isBigEndian) + raw(std::uint8_t{1}) +
                             raw(9.0, isBigEndian) + raw<float>({1, 2}, isBigEndian) +
                             raw(std::uint16_t{2}, isBigEndian) + "ab" + raw(6.0F, isBigEndian) +
                             raw(std::uint8_t{0}) + raw<float>({4.5F, -5}, isBigEndian);
    const std::string file = ply(vertex, data, isBigEndian ? "binary_big_endian" : "binary_little_endian");
    EXPECT_EQ(read(file), twoPoints);
    FrameReader reader;
    EXPECT_TRUE(testing::areFloats(reader.read(testing::bytesOf(file), FrameKind::Ply).points));
  }
  FrameReader reader;
  const std::string file = ply(vertex, "0 3 1 9 1 2\n2 7 7 6 0 4.5 -5\n");
  EXPECT_EQ(reader.read(testing::bytesOf(file), FrameKind::Ply).columns[0].count, 0U);
}

TEST(Ply, HeadersMayHaveBlanksAndEmptyLinesAndCarriageReturns) {
  EXPECT_EQ(
      read("ply \r\n\r\nobj_info by hand\r\nformat ascii 1.0\r\ncomment\r\n element  vertex 2 \r\n"
           "property float x\r\ncomment here too\r\nproperty float y\r\nproperty float z \r\nend_header\r\n"
           "1 2 3\r\n\r\n 4.5 -5 6"),
      twoPoints);
  std::string header = ply(twoVertices, "", "binary_little_endian");
  for (std::size_t at = 0; (at = header.find('\n', at)) != std::string::npos; at += 2) {
    header.replace(at, 1, "\r\n");
  }
  EXPECT_EQ(read(header + raw<float>({1, 2, 3, 4.5F, -5, 6})), twoPoints);
}

TEST(Ply, AFrameWithoutVerticesIsLegal) {
  EXPECT_EQ(read(ply("element vertex 0\n" + xyz, "")), std::vector<Point>());
  EXPECT_EQ(read(ply("element vertex 0\n" + xyz, "", "binary_big_endian")), std::vector<Point>());
}

TEST(Ply, HeadersThatAreNotUnderstoodAreRefused) {
  EXPECT_EQ(refused("plain text\n"), "line 1: the first line of a PLY file is \"ply\", not \"plain text\"");
  EXPECT_EQ(refused("ply\nformat ascii 1.0\n"), "line 2: the header has no line \"end_header\"");
  EXPECT_EQ(refused("ply\nend_header\n"), "line 2: the header has no line \"format\"");
  EXPECT_EQ(refused(ply("", "")), "line 3: the header has no element \"vertex\"");
  EXPECT_EQ(refused("ply\nformat ascii 2.0\n"),
            "line 2: unknown format; ascii, binary_little_endian and "
            "binary_big_endian of version 1.0 are read");
  EXPECT_EQ(
      refused(ply("format ascii 1.0\n", "")),
      "line 3: unexpected line in the header: \"format ascii 1.0\"; format, comment, obj_info, element, "
      "property and end_header are read");
  EXPECT_EQ(refused(ply("element vertex -1\n", "")), "line 3: an element needs a name and a whole number");
  EXPECT_EQ(refused(ply("element vertex\n", "")), "line 3: an element needs a name and a whole number");
  EXPECT_EQ(refused(ply("element vertex 99999999999999999999\n", "")),
            "line 3: an element needs a name and a whole number");
  EXPECT_EQ(refused(ply("property float x\n", "")), "line 3: a property stands before the first element");
  EXPECT_EQ(refused(ply("element vertex 1\nproperty half x\n", "")),
            "line 4: unknown type of a property: \"half\"; char, uchar, short, ushort, int, uint, float and "
            "double, and int8 to uint64, float32 and float64 are read");
  EXPECT_EQ(refused(ply("element vertex 1\nproperty float\n", "")),
            "line 4: a property needs a type and a name, or \"list\", two types and a name");
  EXPECT_EQ(refused(ply("element vertex 1\nproperty list float int x\n", "")),
            "line 4: the length of a list is of type \"float\"; it must be a whole number");
  EXPECT_EQ(refused(ply(twoVertices + "element vertex 2\n", "")),
            "line 7: the header has two elements \"vertex\"");
  EXPECT_EQ(refused(ply("element vertex 1\nproperty float x\nproperty float y\n", "1 2\n")),
            "line 3: no column is named \"z\"; there are \"x\", \"y\"");
  EXPECT_EQ(
      refused(ply("element vertex 1\nproperty float x\nproperty float y\nproperty list int int z\n", "")),
      "line 3: column \"z\" has a list of values for each point; a coordinate has 1");
}

TEST(Ply, AHeaderHasAtMost1000ElementsAndProperties) {
  std::string elements = "element vertex 1\n" + xyz;
  for (int i = 4; i < 1000; ++i) {
    elements += i % 2 == 0 ? "element a 0\n" : "property int b\n";
  }
  EXPECT_EQ(read(ply(elements, "1 2 3\n")), (std::vector<Point>{{1, 2, 3}}));
  EXPECT_EQ(refused(ply(elements + "property int c\n", "1 2 3\n")),
            "line 1003: the header has more than 1000 elements and properties");
}

TEST(Ply, WhatIsCutIsRefused) {
  EXPECT_EQ(refused(ply(twoVertices, "1 2 3\n")),
            "line 8: the file ends after 1 of the 2 points of its header");
  EXPECT_EQ(refused(ply(twoVertices, "1 2 3\n4 5\n")), "line 9: the row has 2 values; it needs 3");
  EXPECT_EQ(refused(ply(face + twoVertices, "2 0 1 9\n")),
            "line 11: the file ends after 1 of the 2 elements \"face\" of its header");
  const std::string binary = ply(twoVertices, std::string(23, 'x'), "binary_little_endian");
  EXPECT_EQ(refused(binary), "byte " + std::to_string(binary.size()) +
                                 ": the file ends inside element \"vertex\" number 2 of 2");
  for (std::size_t cut = 0; cut < faces(false).size(); ++cut) {
    const std::string file = ply(face + twoVertices, faces(false).substr(0, cut), "binary_little_endian");
    EXPECT_EQ(refused(file), "byte " + std::to_string(file.size()) +
                                 ": the file ends inside element \"face\" number " + (cut < 11 ? "1" : "2") +
                                 " of 2");
  }
}

TEST(Ply, HeadersThatPromiseTooMuchAreRefused) {
  const std::string vertices = "element vertex 4000000000\n" + xyz;
  EXPECT_EQ(refused(ply(vertices, "1 2 3\n")),
            "line 8: the file ends after 1 of the 4000000000 points of its header");
  const std::string file = ply(vertices, std::string(100, 'x'), "binary_little_endian");
  EXPECT_EQ(refused(file), "byte " + std::to_string(file.size()) +
                               ": the file ends inside element \"vertex\" number 9 of 4000000000");
  const std::string lists = "element vertex 18446744073709551615\nproperty list uchar char l\n" + xyz;
  EXPECT_NE(refused(ply(lists, std::string(100, '\0'), "binary_little_endian")), "");
  EXPECT_NE(refused(ply(lists, "0 1 2 3\n")), "");
}

TEST(Ply, ListsOfImpossibleLengthAreRefused) {
  const std::string list = "element face 1\nproperty list int uchar l\n";
  const std::string file = ply(list + twoVertices, raw(std::int32_t{-1}) + "abc", "binary_little_endian");
  EXPECT_EQ(refused(file), "byte " + std::to_string(file.size() - 7) +
                               ": a list of element \"face\" has an impossible length");
  const std::string wide = "element face 1\nproperty list uint64 double l\n";
  EXPECT_NE(refused(ply(wide + twoVertices, raw(~std::uint64_t{0} / 8 + 1) + "abcd", "binary_little_endian")),
            "");
  EXPECT_EQ(refused(ply(list + twoVertices, "-1 2\n")),
            "line 10, column 1: not the length of a list: \"-1\"");
  EXPECT_EQ(refused(ply(list + twoVertices, "3 1 2\n")),
            "line 10: the row does not have the values of one element \"face\"");
  EXPECT_EQ(refused(ply(list + twoVertices, "1 1 2\n")),
            "line 10: the row does not have the values of one element \"face\"");
}

}  // namespace
}  // namespace orvantis::toolkit
