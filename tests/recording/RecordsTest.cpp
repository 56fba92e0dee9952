#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "FrameFiles.h"
#include "recording/RecordWidth.h"

namespace orvantis::toolkit {
namespace {

using testing::Point;
using testing::raw;

std::string refused(const std::string& file, const std::string& columns = "") {
  return testing::refusal(file, FrameKind::Records, columns);
}

std::vector<std::size_t> widths(const std::string& file) {
  return plausibleRecordWidths(testing::bytesOf(file));
}

using Row = std::vector<float>;

// What a turning sensor sees: walls, the ground, and the beams one after the other as they fire.
std::vector<Row> scan(std::size_t beams, std::size_t turns) {
  std::mt19937 random(8);
  std::vector<Row> rows;
  for (std::size_t turn = 0; turn < turns; ++turn) {
    const double bearing = 6.283185307179586 * static_cast<double>(turn) / static_cast<double>(turns);
    for (std::size_t i = 0; i < beams; ++i) {
      const std::size_t beam = i % 2 == 0 ? i / 2 : beams / 2 + i / 2;
      const double slope = -0.5 + 0.7 * static_cast<double>(beam) / static_cast<double>(beams);
      double range = 15.0 + 10.0 * std::sin(3.0 * bearing);
      range = slope < 0 ? std::min(range, -1.8 / std::sin(slope)) : range;
      const auto value = [](double number) { return static_cast<float>(number); };
      rows.push_back({value(range * std::cos(slope) * std::cos(bearing)),
                      value(range * std::cos(slope) * std::sin(bearing)), value(range * std::sin(slope)),
                      static_cast<float>(random() % 256), static_cast<float>(beam)});
    }
  }
  return rows;
}

// The first `width` columns; what a row does not have is noise of another kind each.
std::string records(const std::vector<Row>& rows, std::size_t width) {
  std::mt19937 random(9);
  std::string bytes;
  for (const Row& row : rows) {
    for (std::size_t column = 0; column < width; ++column) {
      const float noise =
          std::ldexp(static_cast<float>(random() % 1000) / 1000.0F, 4 - static_cast<int>(column));
      bytes += raw(column < row.size() ? row[column] : noise);
    }
  }
  return bytes;
}

TEST(Records, GivenColumnsAreTaken) {
  const std::string file = raw<float>({1, 2, 3, 4.5F, -5, 6});
  EXPECT_EQ(testing::readPoints(file, FrameKind::Records, "3"),
            (std::vector<Point>{{1, 2, 3}, {4.5, -5, 6}}));
  EXPECT_EQ(testing::readPoints(file, FrameKind::Records, "6"), (std::vector<Point>{{1, 2, 3}}));
  EXPECT_EQ(testing::readPoints(file, FrameKind::Records, "tzy_ix"), (std::vector<Point>{{6, 3, 2}}));
  EXPECT_EQ(testing::readPoints(file, FrameKind::Records, "Z,Y,X"),
            (std::vector<Point>{{3, 2, 1}, {6, -5, 4.5}}));
}

TEST(Records, AreSeenInTheFile) {
  const std::string file = raw<float>({1, 2, 3, 4, 5, 6, 7, 8});
  FrameReader reader;
  const Frame frame = reader.read(testing::bytesOf(file), FrameKind::Records, parseColumnNames("ixyz"));
  const auto& view = std::get<filter::classify::PointsView<float>>(frame.points);
  EXPECT_EQ(view.x, file.data() + 4);
  EXPECT_EQ(view.stride, 16U);
  EXPECT_EQ(frame.columns[0].name, "i");
}

TEST(Records, WhatIsCutIsRefused) {
  EXPECT_EQ(refused(std::string(39, 'x'), "xyzi"),
            "byte 39: the file ends inside point 3: 39 bytes are not a whole number of records of 16 bytes "
            "(float32 x, y, z, i)");
  EXPECT_EQ(refused(std::string(39, 'x'), "10"),
            "byte 39: the file ends inside point 1: 39 bytes are not a whole number of records of 40 bytes "
            "(float32 x, y, z, column 4, column 5, column 6, column 7, column 8, ...)");
  EXPECT_EQ(
      refused(std::string(39, '\0')),
      "byte 39: 39 bytes are not a whole number of plausible records of 3, 4, 5 or 6 float32 columns that "
      "begin with x, y, z; if the file is whole, say what a record holds with --columns, such as --columns "
      "7 or --columns t,x,y,z");
}

TEST(Records, WhatMayBeSeveralThingsIsRefused) {
  EXPECT_EQ(refused(std::string(48, '\0')),
            "byte 0: 48 bytes may be records of 3, 4 or 6 float32 columns; say "
            "which with --columns 3 or --columns 4");
  EXPECT_EQ(refused(std::string(60, '\0')),
            "byte 0: 60 bytes may be records of 3 or 5 float32 columns; say "
            "which with --columns 3 or --columns 5");
}

TEST(Records, TheOnlyWidthThatFitsIsTaken) {
  EXPECT_EQ(testing::readPoints(raw<float>({1, 2, 3, 4, 5, 6, 7, 8}), FrameKind::Records),
            (std::vector<Point>{{1, 2, 3}, {5, 6, 7}}));
  FrameReader reader;
  const std::string file = raw<float>({1, 2, 3, 4, 5});
  EXPECT_EQ(reader.read(testing::bytesOf(file), FrameKind::Records).columns[4].name, "column 5");
}

TEST(Records, CoordinatesArePlausible) {
  const auto of = [](float value) { return raw<float>({1, 2, value, 4}); };
  EXPECT_EQ(widths(of(3)), std::vector<std::size_t>{4});
  EXPECT_EQ(widths(of(-1e7F)), std::vector<std::size_t>{4});
  EXPECT_EQ(widths(of(1.1e7F)), std::vector<std::size_t>());
  EXPECT_EQ(widths(of(-1.1e7F)), std::vector<std::size_t>());
  // The whole number 7, read as a float.
  EXPECT_EQ(widths(raw<float>({1, 2}) + raw(std::uint32_t{7}) + raw(4.0F)), std::vector<std::size_t>());
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(widths(of(nan)), std::vector<std::size_t>());
  EXPECT_EQ(widths(of(nan) + of(3)), std::vector<std::size_t>{4});
  // The fourth column may be anything.
  EXPECT_EQ(widths(raw<float>({1, 2, 3, nan})), std::vector<std::size_t>{4});
}

TEST(Records, TheWidthIsFoundInWhatTheyHold) {
  // 2880 records, 120 and 480: every width fits in size.
  for (std::size_t width = 4; width <= 6; ++width) {
    EXPECT_EQ(widths(records(scan(32, 90), width)), std::vector<std::size_t>{width}) << width;
    EXPECT_EQ(widths(records(scan(4, 30), width)), std::vector<std::size_t>{width}) << width;
    EXPECT_EQ(widths(records(scan(1, 480), width)), std::vector<std::size_t>{width}) << width;
  }
  EXPECT_EQ(widths(records(scan(1, 480), 3)), std::vector<std::size_t>{3});
}

// Beams that fire by turns, up and down, look like two kinds of columns.
TEST(Records, ThreeColumnsOfTwoBeamsAreNotTakenForSix) {
  EXPECT_EQ(widths(records(scan(32, 90), 3)), (std::vector<std::size_t>{3, 6}));
  EXPECT_EQ(widths(records(scan(4, 30), 3)), (std::vector<std::size_t>{3, 6}));
}

TEST(Records, WiderRecordsAreNotTakenForShorterOnes) {
  const std::vector<Row> rows = scan(32, 90);
  for (std::size_t width = 7; width <= 16; ++width) {
    EXPECT_EQ(widths(records(rows, width)), std::vector<std::size_t>()) << width;
  }
}

TEST(Records, WhatTellsNothingLeavesItOpen) {
  std::mt19937 random(10);
  std::string cube;
  for (int i = 0; i < 3600; ++i) {
    cube += raw(static_cast<float>(random() % 20001) / 1000.0F - 10.0F);
  }
  EXPECT_EQ(widths(cube), (std::vector<std::size_t>{3, 4, 5, 6}));
}

TEST(Records, TwoReturnsInARecordAreTwoPoints) {
  std::vector<Row> rows = scan(1, 480);
  for (Row& row : rows) {
    row = {row[0], row[1], row[2], row[0] * 1.05F, row[1] * 1.05F, row[2] * 1.05F};
  }
  EXPECT_EQ(widths(records(rows, 6)), std::vector<std::size_t>{3});
}

TEST(ColumnNames, AreANumberOrLettersOrNames) {
  EXPECT_EQ(parseColumnNames("3"), (ColumnNames{"x", "y", "z"}));
  EXPECT_EQ(parseColumnNames("5"), (ColumnNames{"x", "y", "z", "column 4", "column 5"}));
  EXPECT_EQ(parseColumnNames("xyzi"), (ColumnNames{"x", "y", "z", "i"}));
  EXPECT_EQ(parseColumnNames("t,X,y,z"), (ColumnNames{"t", "X", "y", "z"}));
  EXPECT_EQ(parseColumnNames("1000").size(), 1000U);
}

TEST(ColumnNames, OthersAreRefusedWithWhatIsAllowed) {
  for (const std::string text : {"", "2", "1001", "99999999999999999999", "-4", "4.0", "xy", "xyzx", "xyzX",
                                 "x,y", "x,y,,z", "x,y,z,"}) {
    try {
      parseColumnNames(text);
      ADD_FAILURE() << text;
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(
          error.what(),
          "\"" + text +
              "\" is not a list of columns; give how many there are, from 3 to 1000, or their names with x, "
              "y and z once each (t,x,y,z or xyzi)");
    }
  }
}

}  // namespace
}  // namespace orvantis::toolkit
