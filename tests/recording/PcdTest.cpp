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

std::vector<Point> read(const std::string& file) {
  return testing::readPoints(file, FrameKind::Pcd);
}

std::string refused(const std::string& file) {
  return testing::refusal(file, FrameKind::Pcd);
}

struct Header {
  std::string fields = "x y z";
  std::string size = "4 4 4";
  std::string type = "F F F";
  std::string count = "1 1 1";
  std::string width = "2";
  std::string height = "1";
  std::string points = "2";
  std::string data = "binary";

  // The line of FIELDS is number 3, that of DATA 11.
  std::string text() const {
    return "# .PCD v0.7\nVERSION 0.7\nFIELDS " + fields + "\nSIZE " + size + "\nTYPE " + type + "\nCOUNT " +
           count + "\nWIDTH " + width + "\nHEIGHT " + height + "\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " + points +
           "\nDATA " + data + "\n";
  }
};

std::string binary(const std::string& points) {
  return Header().text() + points;
}
std::string ascii(const std::string& rows) {
  Header header;
  header.data = "ascii";
  return header.text() + rows;
}
// Runs as they are: a length less one, then the bytes.
std::string compressed(const Header& start, const std::string& columns) {
  Header header = start;
  header.data = "binary_compressed";
  std::string block;
  for (std::size_t at = 0; at < columns.size(); at += 32) {
    const std::string run = columns.substr(at, 32);
    block += static_cast<char>(run.size() - 1) + run;
  }
  return header.text() + raw(static_cast<std::uint32_t>(block.size())) +
         raw(static_cast<std::uint32_t>(columns.size())) + block;
}

const std::vector<Point> twoPoints = {{1, 2, 3}, {4.5, -5, 6}};
const std::string twoPointsRaw = raw<float>({1, 2, 3, 4.5F, -5, 6});

TEST(Pcd, EveryKindOfDataIsRead) {
  EXPECT_EQ(read(binary(twoPointsRaw)), twoPoints);
  EXPECT_EQ(read(ascii("1 2 3\n4.5 -5 6\n")), twoPoints);
  EXPECT_EQ(read(compressed({}, raw<float>({1, 4.5F, 2, -5, 3, 6}))), twoPoints);
}

TEST(Pcd, BinaryFloatsAreSeenInTheFile) {
  const std::string file = binary(twoPointsRaw);
  FrameReader reader;
  const Frame frame = reader.read(testing::bytesOf(file), FrameKind::Pcd);
  const auto& view = std::get<filter::classify::PointsView<float>>(frame.points);
  EXPECT_EQ(view.x, file.data() + file.size() - 24);
  EXPECT_EQ(view.stride, 12U);
}

TEST(Pcd, ColumnsAreToldAsTheFileNamesThem) {
  Header header;
  header.fields = "Z rgb X Y";
  header.size = "4 1 4 4";
  header.type = "F U F F";
  header.count = "1 3 1 1";
  header.points = header.width = "0";
  FrameReader reader;
  const std::string file = header.text();
  const Frame frame = reader.read(testing::bytesOf(file), FrameKind::Pcd);
  ASSERT_EQ(frame.columns.size(), 4U);
  EXPECT_EQ(frame.columns[0].name, "Z");
  EXPECT_EQ(frame.columns[1].name, "rgb");
  EXPECT_EQ(frame.columns[1].type, NumberType::U1);
  EXPECT_EQ(frame.columns[1].count, 3U);
  EXPECT_EQ(sizeOf(frame.points), 0U);
}

TEST(Pcd, FieldsMayComeInAnyOrderAmongOthers) {
  Header header;
  header.fields = "_ z ring y x";
  header.size = "1 8 2 2 1";
  header.type = "U F U I U";
  header.count = "3 1 2 1 1";
  const auto point = [](double z, std::int16_t y, std::uint8_t x) {
    return std::string("abc") + raw(z) + raw<std::uint16_t>({7, 8}) + raw(y) + raw(x);
  };
  EXPECT_EQ(read(header.text() + point(3.25, -2, 255) + point(6, 5, 4)),
            (std::vector<Point>{{255, -2, 3.25}, {4, 5, 6}}));
  const std::string columns = std::string("abcabc") + raw<double>({3.25, 6}) +
                              raw<std::uint16_t>({7, 8, 7, 8}) + raw<std::int16_t>({-2, 5}) +
                              raw<std::uint8_t>({255, 4});
  EXPECT_EQ(read(compressed(header, columns)), (std::vector<Point>{{255, -2, 3.25}, {4, 5, 6}}));
  header.data = "ascii";
  EXPECT_EQ(read(header.text() + "9 9 9 3.25 8 8 -2 255\n9 9 9 6 8 8 5 4\n"),
            (std::vector<Point>{{255, -2, 3.25}, {4, 5, 6}}));
}

TEST(Pcd, TextIsReadAsTheTypeThatItsFieldsHave) {
  const std::string rows = "0.1 0.2 0.3\n1 2 3\n";
  EXPECT_EQ(read(ascii(rows))[0][0], 0.1F);
  Header header;
  header.data = "ascii";
  header.size = "4 8 4";
  EXPECT_EQ(read(header.text() + rows)[0][0], 0.1);
}

TEST(Pcd, WhatFollowsTheLastPointIsLegal) {
  EXPECT_EQ(read(binary(twoPointsRaw + std::string(3906, 'x'))), twoPoints);
  EXPECT_EQ(read(ascii("1 2 3\n\n4.5 -5 6\n7 8 9\nwords\n")), twoPoints);
  EXPECT_EQ(read(compressed({}, raw<float>({1, 4.5F, 2, -5, 3, 6})) + "tail"), twoPoints);
}

TEST(Pcd, ABlockThatDidNotShrinkMayBeStoredAsItIs) {
  const std::string columns = raw<float>({1, 4.5F, 2, -5, 3, 6});
  Header header;
  header.data = "binary_compressed";
  const std::string size = raw(static_cast<std::uint32_t>(columns.size()));
  EXPECT_EQ(read(header.text() + size + size + columns), twoPoints);
}

TEST(Pcd, LineEndsOfOtherSystemsAreLegal) {
  std::string text = ascii("1 2 3\n4.5 -5 6");
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
    text.replace(at, 1, "\r\n");
  }
  EXPECT_EQ(read(text), twoPoints);
  std::string header = Header().text();
  for (std::size_t at = 0; (at = header.find('\n', at)) != std::string::npos; at += 2) {
    header.replace(at, 1, "\r\n");
  }
  EXPECT_EQ(read(header + twoPointsRaw), twoPoints);
}

TEST(Pcd, OldAndShortHeadersAreLegal) {
  EXPECT_EQ(read("VERSION .5\nCOLUMNS x y z\nSIZE 4 4 4\nTYPE F F F\nPOINTS 1\nDATA ascii\n1 2 3\n"),
            (std::vector<Point>{{1, 2, 3}}));
  EXPECT_EQ(read("TYPE F F F\n\n  SIZE 4 4 4\nFIELDS x y z\nHEIGHT 1\nWIDTH 1\nDATA ascii\n1 2 3\n"),
            (std::vector<Point>{{1, 2, 3}}));
}

TEST(Pcd, AnOrganisedFrameHasWidthTimesHeightPoints) {
  Header header;
  header.width = "1";
  header.height = "2";
  EXPECT_EQ(read(header.text() + twoPointsRaw), twoPoints);
  header.height = "3";
  EXPECT_EQ(refused(header.text() + twoPointsRaw),
            "line 10: the header contradicts itself: WIDTH 1 times HEIGHT 3 are not POINTS 2");
}

TEST(Pcd, AFrameWithoutPointsIsLegal) {
  Header header;
  header.width = header.points = "0";
  for (const std::string data : {"ascii", "binary", "binary_compressed"}) {
    header.data = data;
    EXPECT_EQ(read(header.text()), std::vector<Point>());
  }
}

TEST(Pcd, WhatIsCutIsRefused) {
  const std::size_t size = Header().text().size();
  EXPECT_EQ(refused(binary(twoPointsRaw.substr(0, 23))),
            "byte " + std::to_string(size + 23) +
                ": the file ends inside point 2 of the 2 points of its header, each of 12 bytes");
  EXPECT_EQ(refused(ascii("1 2 3\n")), "line 12: the file ends after 1 of the 2 points of its header");
  EXPECT_EQ(refused(ascii("1 2 3\n4 5\n")), "line 13: the row has 2 values; it needs 3");
  EXPECT_EQ(refused("VERSION 0.7\nFIELDS x y z\n"), "line 2: the header has no DATA line");
  const std::string block = compressed({}, raw<float>({1, 4.5F, 2, -5, 3, 6}));
  EXPECT_EQ(refused(block.substr(0, block.size() - 1)),
            "byte " + std::to_string(block.size() - 1) +
                ": the file ends 1 bytes before the end of its compressed block of 25");
  EXPECT_EQ(refused(block.substr(0, block.size() - 26)),
            "byte " + std::to_string(block.size() - 26) + ": the file ends before its compressed points");
}

TEST(Pcd, HeadersThatPromiseTooMuchAreRefused) {
  Header header;
  header.width = header.points = "4000000000";
  EXPECT_EQ(refused(header.text() + "123"),
            "byte " + std::to_string(header.text().size() + 3) +
                ": the file ends inside point 1 of the 4000000000 points of its header, each of 12 bytes");
  header.data = "ascii";
  EXPECT_EQ(refused(header.text() + "1 2 3\n"),
            "line 12: the file ends after 1 of the 4000000000 points of its header");
  header.width = "4294967296";
  EXPECT_EQ(refused(header.text()), "line 7: WIDTH is too large: \"4294967296\"; at most 4294967295 is read");
  header.width = "99999999999999999999";
  EXPECT_EQ(refused(header.text()),
            "line 7: WIDTH is too large: \"99999999999999999999\"; at most 4294967295 is read");
  header.width = "-1";
  EXPECT_EQ(refused(header.text()), "line 7: WIDTH is not a whole number: \"-1\"");
  header.width = "4294967295";
  header.height = "4294967295";
  header.points = "1";
  EXPECT_EQ(refused(header.text()),
            "line 10: the header contradicts itself: WIDTH 4294967295 times HEIGHT "
            "4294967295 are not POINTS 1");
  header = Header();
  header.count = "1 1 1048577";
  EXPECT_EQ(refused(header.text()), "line 6: COUNT is too large: \"1048577\"; at most 1048576 is read");
}

TEST(Pcd, CompressedBlocksThatContradictTheHeaderAreRefused) {
  Header header;
  header.data = "binary_compressed";
  const std::string at = std::to_string(header.text().size());
  const std::string at4 = std::to_string(header.text().size() + 4);
  const auto block = [&](std::uint32_t size, std::uint32_t full, const std::string& bytes) {
    return refused(header.text() + raw(size) + raw(full) + bytes);
  };
  EXPECT_EQ(block(3, 23, "abc"), "byte " + at4 +
                                     ": the compressed block of 23 bytes does not hold the 2 points "
                                     "of its header, each of 12 bytes");
  EXPECT_EQ(block(3, 25, "abc"), "byte " + at4 +
                                     ": the compressed block of 25 bytes does not hold the 2 points "
                                     "of its header, each of 12 bytes");
  // A reference to bytes before the first one.
  EXPECT_EQ(block(3, 24, "\xE0\x0F\x01"),
            "byte " + std::to_string(header.text().size() + 8) + ": the compressed block is damaged");
  header.width = header.points = "1000000";
  EXPECT_EQ(refused(header.text() + raw<std::uint32_t>({3, 12000000}) + "abc"),
            "byte " + std::to_string(header.text().size()) +
                ": a compressed block of 3 bytes cannot hold 12000000");
}

TEST(Pcd, HeadersThatAreNotUnderstoodAreRefused) {
  EXPECT_EQ(
      refused("289814.15 4320978.61 170.76\n"),
      "line 1: not a line of a PCD header: \"289814.15 4320978.61 170.76\"; a header has VERSION, FIELDS, "
      "SIZE, TYPE, COUNT, WIDTH, HEIGHT, VIEWPOINT, POINTS and DATA");
  EXPECT_EQ(refused("VERSION 0.8\nDATA ascii\n"),
            "line 1: VERSION \"0.8\" is not known; 0.5, 0.6 and 0.7 are read");
  EXPECT_EQ(refused("VERSION 0.7\nVERSION 0.7\n"), "line 2: VERSION stands twice in the header");
  EXPECT_EQ(refused("VERSION\n"), "line 1: VERSION has no value");
  EXPECT_EQ(refused("DATA ascii\n"), "line 1: the header has no FIELDS");
  EXPECT_EQ(refused("FIELDS x y z\nSIZE 4 4 4\nTYPE F F F\nWIDTH 1\nDATA ascii\n"),
            "line 5: the header has no POINTS");
  Header header;
  header.data = "text";
  EXPECT_EQ(refused(header.text()),
            "line 11: DATA \"text\" is not known; ascii, binary and binary_compressed are read");
  header = Header();
  header.size = "4 4";
  EXPECT_EQ(refused(header.text()), "line 4: SIZE has 2 values; FIELDS has 3");
  header = Header();
  header.type = "F F F F";
  EXPECT_EQ(refused(header.text()), "line 5: TYPE has 4 values; FIELDS has 3");
  header = Header();
  header.count = "1 1 0";
  EXPECT_EQ(refused(header.text()), "line 6: field \"z\" has COUNT 0; 1 is the least");
}

TEST(Pcd, AHeaderNamesAtMost1000Fields) {
  std::string names = "x y z";
  std::string sizes = "1 1 1";
  std::string types = "I I I";
  for (int i = 3; i < 1000; ++i) {
    names += " a";
    sizes += " 1";
    types += " U";
  }
  const auto file = [&] {
    return "FIELDS " + names + "\nSIZE " + sizes + "\nTYPE " + types + "\nPOINTS 1\nDATA binary\n" +
           std::string(1001, '\x07');
  };
  EXPECT_EQ(read(file()), (std::vector<Point>{{7, 7, 7}}));
  names += " b";
  EXPECT_EQ(refused(file()), "line 1: FIELDS has more than 1000 values");
}

TEST(Pcd, FieldsThatCannotBeReadAreNamed) {
  Header header;
  header.type = "F F Q";
  EXPECT_EQ(refused(header.text()),
            "line 5: field \"z\" is of TYPE \"Q\" and SIZE 4; I and U of 1, 2, 4 and 8 "
            "bytes and F of 4 and 8 are read");
  header.type = "F F F";
  header.size = "2 4 4";
  EXPECT_EQ(refused(header.text()),
            "line 5: field \"x\" is of TYPE \"F\" and SIZE 2; I and U of 1, 2, 4 and 8 "
            "bytes and F of 4 and 8 are read");
  header = Header();
  header.fields = "x y q\x1b";
  EXPECT_EQ(refused(header.text()), "line 3: no column is named \"z\"; there are \"x\", \"y\", \"q\\x1b\"");
  header.fields = "x z Z";
  EXPECT_EQ(refused(header.text()), "line 3: no column is named \"y\"; there are \"x\", \"z\", \"Z\"");
  header.fields = "x y z Z";
  header.size = "4 4 4 4";
  header.type = "F F F F";
  header.count = "1 1 1 1";
  EXPECT_EQ(refused(header.text()), "line 3: two columns are named \"z\"");
  header = Header();
  header.count = "1 2 1";
  EXPECT_EQ(refused(header.text()), "line 3: column \"y\" has 2 values for each point; a coordinate has 1");
}

TEST(Pcd, RowsThatAreNotNumbersAreRefused) {
  EXPECT_EQ(refused(ascii("1 2 3\n1 two 3\n")), "line 13, column 3: y is not a number: \"two\"");
  EXPECT_EQ(refused(ascii("1 2 3\n1 2 0x10\n")), "line 13, column 5: z is not a number: \"0x10\"");
  EXPECT_EQ(refused(ascii("1 2 3\n1 2 3 4\n")), "line 13: the row has 4 values; it needs 3");
  EXPECT_EQ(refused(ascii("1 2 3\n1e400 2 3\n")), "line 13, column 1: x is out of range: \"1e400\"");
  EXPECT_EQ(refused(ascii("1 2 3\n1e40 2 3\n")),
            "line 13: a coordinate is out of the range of a 4-byte float");
}

}  // namespace
}  // namespace orvantis::toolkit
