#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "FrameFiles.h"

namespace orvantis::toolkit {
namespace {

using testing::Point;

std::vector<Point> read(const std::string& file, const std::string& columns = "") {
  return testing::readPoints(file, FrameKind::Text, columns);
}

std::string refused(const std::string& file, const std::string& columns = "") {
  return testing::refusal(file, FrameKind::Text, columns);
}

std::string columnsOf(const std::string& file, const std::string& columns = "") {
  FrameReader reader;
  std::string text;
  for (const Column& column : reader
                                  .read(testing::bytesOf(file), FrameKind::Text,
                                        columns.empty() ? ColumnNames() : parseColumnNames(columns))
                                  .columns) {
    text += column.name + "|";
  }
  return text;
}

const std::vector<Point> twoPoints = {{1, 2, 3}, {4.5, -5, 6}};

TEST(TextFrame, ValuesAreParted) {
  EXPECT_EQ(read("1 2 3\n4.5 -5 6\n"), twoPoints);
  EXPECT_EQ(read("  1\t2   3 \r\n4.5 -5 6"), twoPoints);
  EXPECT_EQ(read("1,2,3\n4.5,-5,6\n"), twoPoints);
  EXPECT_EQ(read("1 , 2\t,3 \n 4.5,-5,   6\n"), twoPoints);
  EXPECT_EQ(read("1;2;3\n4.5;-5;6\n"), twoPoints);
  EXPECT_EQ(read("1\t2\t3\n4.5\t-5\t6\n"), twoPoints);
}

TEST(TextFrame, ValuesAreDoubles) {
  EXPECT_EQ(read("0.1 0.2 5411989.016597509\n")[0], (Point{0.1, 0.2, 5411989.016597509}));
}

TEST(TextFrame, CommentsAndEmptyLinesAreSkipped) {
  EXPECT_EQ(read("# site\n\n// more\n1 2 3\n \t\n  # between\n4.5 -5 6\n//end"), twoPoints);
}

TEST(TextFrame, WithoutAHeaderTheFirstThreeColumnsAreCoordinates) {
  EXPECT_EQ(read("1 2 3 9 red\n4.5 -5 6 9 blue\n"), twoPoints);
  EXPECT_EQ(columnsOf("1 2 3 9 red\n"), "x|y|z|column 4|column 5|");
  EXPECT_EQ(read("1 1 1 25\n2 2 2 30\n"), (std::vector<Point>{{1, 1, 1}, {2, 2, 2}}));
}

TEST(TextFrame, AHeaderNamesTheColumns) {
  EXPECT_EQ(read("t,x,z,intensity,Y\n0,1,3,9,2\n0,4.5,6,,-5\n"), twoPoints);
  EXPECT_EQ(read("\"Z\";\"X\";'y'\n3;1;2\n6;4.5;-5\n"), twoPoints);
  EXPECT_EQ(read("scan angle\tz\ty\tx\n0\t3\t2\t1\n0\t6\t-5\t4.5\n"), twoPoints);
  EXPECT_EQ(read("# site\nX Y Z Value0\n1 2 3 4\n4.5 -5 6 7\n"), twoPoints);
  EXPECT_EQ(columnsOf("t,x,z,\"my y\",y\n0,1,3,9,2\n"), "t|x|z|my y|y|");
}

TEST(TextFrame, ACommentThatNamesAllColumnsIsAHeader) {
  EXPECT_EQ(read("# t x y z\n0 1 2 3\n0 4.5 -5 6\n"), twoPoints);
  EXPECT_EQ(read("//Z,Y,X\n3,2,1\n6,-5,4.5\n"), twoPoints);
  // Other words are only words.
  EXPECT_EQ(read("# x y z of the site\n1 2 3\n4.5 -5 6\n"), twoPoints);
  EXPECT_EQ(read("# z y x\n# by hand\n1 2 3\n4.5 -5 6\n"), twoPoints);
  EXPECT_EQ(read("# z y\n1 2 3\n4.5 -5 6\n"), twoPoints);
}

TEST(TextFrame, TheNumberOfPointsMayComeFirst) {
  EXPECT_EQ(read("2\n1 2 3 7\n4.5 -5 6 7\n"), twoPoints);
  EXPECT_EQ(read("# points\n2\r\n1,2,3\n4.5,-5,6\n"), twoPoints);
  EXPECT_EQ(refused("8\n1 2 3\n4 5 6\n"), "line 1: the file says that it has 8 points; 2 follow");
  EXPECT_EQ(refused("1\n1 2 3\n4 5 6\n"), "line 1: the file says that it has 1 points; 2 follow");
  EXPECT_EQ(refused("3\n"), "line 1: the file says that it has 3 points; 0 follow");
}

TEST(TextFrame, GivenColumnsStandForThoseOfTheFile) {
  EXPECT_EQ(read("0 1 2 3\n0 4.5 -5 6\n", "t,x,y,z"), twoPoints);
  EXPECT_EQ(read("a,b,c\n3,2,1\n6,-5,4.5\n", "zyx"), twoPoints);
  EXPECT_EQ(columnsOf("0 1 2 3\n", "t,x,y,z"), "t|x|y|z|");
  EXPECT_EQ(refused("1 2 3\n", "4"), "line 1: the row has 3 values; it needs 4");
}

TEST(TextFrame, AFrameWithoutPointsSaysSo) {
  EXPECT_EQ(read("x,y,z\n"), std::vector<Point>());
  EXPECT_EQ(read("0\n"), std::vector<Point>());
  EXPECT_EQ(refused("\n# nothing\n"), "line 2: no line holds a point");
  EXPECT_EQ(refused(" "), "line 1: no line holds a point");
}

TEST(TextFrame, TextOfOtherSystemsIsReadOrRefusedInWords) {
  EXPECT_EQ(read("\xEF\xBB\xBF"
                 "1 2 3\n4.5 -5 6\n"),
            twoPoints);
  EXPECT_EQ(refused(std::string("\xFF\xFE"
                                "1\0 \0",
                                6)),
            "byte 0: the text is UTF-16; save it as UTF-8");
  EXPECT_EQ(refused("1,5;2;3\n"), "line 1, column 1: x is not a number: \"1,5\"");
}

TEST(TextFrame, WordsForNoNumberArePoints) {
  const std::vector<Point> points = read("nan inf -inf\nNaN -nan 1\n");
  ASSERT_EQ(points.size(), 2U);
  EXPECT_NE(points[0][0], points[0][0]);
  EXPECT_EQ(points[0][2], -std::numeric_limits<double>::infinity());
}

TEST(TextFrame, RowsThatDoNotFitAreRefused) {
  EXPECT_EQ(refused("1 2 3\n4 5\n"), "line 2: the row has 2 values; it needs 3");
  EXPECT_EQ(refused("1 2 3\n4 5 6 7\n"), "line 2: the row has 4 values; it needs 3");
  EXPECT_EQ(refused("1 2 3 4\n4 5 6 7\n4 5 6 7 8\n"), "line 3: the row has 5 values; it needs 4");
  EXPECT_EQ(refused("1 2\n"), "line 1: the row has 2 values; a point needs 3");
  EXPECT_EQ(refused("# a\n2\n1\n"), "line 3: the row has 1 value; a point needs 3");
  EXPECT_EQ(refused("x,y\n1,2\n"), "line 1: no column is named \"z\"; there are \"x\", \"y\"");
  EXPECT_EQ(refused("#\nx,y,z,X\n1,2,3,4\n"), "line 2: two columns are named \"x\"");
  EXPECT_EQ(refused("1 2 3\n1 two 3\n"), "line 2, column 3: y is not a number: \"two\"");
  EXPECT_EQ(refused("1 2 3\n1 2 3x\n"), "line 2, column 5: z is not a number: \"3x\"");
  EXPECT_EQ(refused("1,2,3\n1,,3\n"), "line 2, column 3: y is not a number: \"\"");
  EXPECT_EQ(refused("1,2,3\n1,2,3,\n"), "line 2: the row has 4 values; it needs 3");
  EXPECT_EQ(refused("1,2,3\n1,2 2,3\n"), "line 2, column 3: y is not a number: \"2 2\"");
  EXPECT_EQ(refused("x y z\n1 2 3\nx y z\n"), "line 3, column 1: x is not a number: \"x\"");
  EXPECT_EQ(refused("1 2 3\n1 2 -1e999\n"), "line 2, column 5: z is out of range: \"-1e999\"");
  EXPECT_EQ(refused("1 2 3\n1 2 " + std::string(100, 'a') + "\n"),
            "line 2, column 5: z is not a number: \"" + std::string(40, 'a') + "...\"");
  EXPECT_EQ(refused("1 2 3\n1-2 3\n"), "line 2: the row has 2 values; it needs 3");
  EXPECT_EQ(refused("1 2 3\n1 2-3\n"), "line 2: the row has 2 values; it needs 3");
  EXPECT_EQ(refused("1 2 3\n1 2 3\r4\n"), "line 2, column 5: z is not a number: \"3\\x0d4\"");
  EXPECT_EQ(refused("1 2 3\n1 2 3\r\r\n"), "line 2, column 5: z is not a number: \"3\\x0d\"");
  EXPECT_EQ(refused("1 x 3\n"), "line 1, column 3: y is not a number: \"x\"");
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) {
    result += text;
  }
  return result;
}

TEST(TextFrame, RowsHaveAtMost1000Values) {
  EXPECT_EQ(read(repeated("1 ", 1000) + "\n"), (std::vector<Point>{{1, 1, 1}}));
  EXPECT_EQ(refused(repeated("1 ", 1001) + "\n"), "line 1: the row has more than 1000 values");
  EXPECT_EQ(refused("#\nx,y,z" + repeated(",a", 998) + "\n"), "line 2: the header has more than 1000 names");
}

TEST(TextFrame, LongRowsOfBlanksTakeNoLongTime) {
  const std::string blanks(1 << 20, ' ');
  EXPECT_EQ(read("1," + blanks + "2" + blanks + ",3\n"), (std::vector<Point>{{1, 2, 3}}));
  EXPECT_NE(refused("1," + blanks + "2" + blanks + "x,3\n"), "");
}

}  // namespace
}  // namespace orvantis::toolkit
