#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ByteText.h"
#include "ReadRecording.h"
#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "recording/PointCloud2.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

using testing::asCdr;
using testing::asRos1;
using testing::bytesOf;
using testing::floatCloud;
using testing::Point3;
using testing::WrittenCloud;

// A recording of nothing but this message.
testing::ReadRecording readAlone(const std::string& message) {
  return testing::readRecording(testing::asMcap({{{"/points"}}, {{0, 5, message}}}));
}

std::vector<Point3> pointsOf(const WrittenCloud& cloud) {
  const testing::ReadRecording result = readAlone(asCdr(cloud));
  EXPECT_EQ(result.refusal + result.damage, "");
  return result.clouds.empty() ? std::vector<Point3>() : result.clouds.front().points;
}

// The reason why a cloud is refused, without what every refusal begins and ends with.
std::string refusal(const WrittenCloud& cloud) {
  const std::string text = readAlone(asCdr(cloud)).refusal;
  const std::string end = "; no whole point cloud comes before";
  EXPECT_TRUE(text.ends_with(end)) << text;
  return text.substr(text.find(": ") + 2, text.rfind(end) - text.find(": ") - 2);
}

WrittenCloud twoPoints() {
  return floatCloud({{1, 2, 3}, {-4.5, 0, 1e9}}, 1'700'000'000'000'000'001);
}

TEST(PointCloud2Message, SaysTheSameInEveryEncoding) {
  WrittenCloud cloud = twoPoints();
  for (const char* frame : {"", "a", "ab", "abc", "abcd"}) {
    cloud.frameId = frame;  // moves all that follows it
    for (const auto& [message, encoding] :
         {std::pair(asCdr(cloud), CloudEncoding::cdr), std::pair(asCdr(cloud, true), CloudEncoding::cdr),
          std::pair(asRos1(cloud), CloudEncoding::ros1)}) {
      PointCloud2 read;
      readPointCloud2(testing::viewOf(message), encoding, 0, read);
      EXPECT_EQ(read.stamp.count(), 1'700'000'000'000'000'001);
      EXPECT_EQ(read.frameId, frame);
      EXPECT_EQ(read.height, 1U);
      EXPECT_EQ(read.width, 2U);
      EXPECT_EQ(read.pointStep, 16U);
      EXPECT_EQ(read.rowStep, 32U);
      EXPECT_FALSE(read.isBigEndian);
      EXPECT_EQ(testing::textOf(read.data), cloud.data);
      ASSERT_EQ(read.fields.size(), 4U);
      EXPECT_EQ(read.fields[3].name, "intensity");
      EXPECT_EQ(read.fields[3].offset, 12U);
      EXPECT_EQ(read.fields[3].datatype, 7);
      EXPECT_EQ(read.fields[3].count, 1U);
    }
  }
}

TEST(PointCloud2Message, MayBeBeforeItsEpoch) {
  WrittenCloud cloud = twoPoints();
  cloud.stamp = -1'500'000'000;
  EXPECT_EQ(readAlone(asCdr(cloud)).clouds.front().stamp, -1'500'000'000);
}

TEST(PointCloud2Message, IsTornAtEveryByte) {
  const WrittenCloud cloud = twoPoints();
  for (const auto& [message, encoding] :
       {std::pair(asCdr(cloud), CloudEncoding::cdr), std::pair(asRos1(cloud), CloudEncoding::ros1)}) {
    for (std::size_t size = 0; size < message.size(); ++size) {
      PointCloud2 read;
      EXPECT_THROW(readPointCloud2(testing::viewOf(message).first(size), encoding, 7, read), ReadError)
          << size;
    }
  }
}

TEST(PointCloud2Message, MayHaveAnyTypeInAnyOrder) {
  WrittenCloud cloud;
  cloud.width = 2;
  cloud.pointStep = 25;
  cloud.fields = {{"z", 0, 8, 1}, {"ring", 8, 2, 1}, {"x", 9, 8, 1}, {"y", 17, 8, 1}};
  for (const double start : {100.0, 200.0}) {
    cloud.data += bytesOf(start + 0.25) + "r" + bytesOf(start + 0.5) + bytesOf(start + 0.75);
  }
  EXPECT_EQ(pointsOf(cloud), (std::vector<Point3>{{100.5, 100.75, 100.25}, {200.5, 200.75, 200.25}}));

  cloud.width = 1;
  cloud.pointStep = 7;
  cloud.fields = {{"x", 0, 1, 1}, {"y", 1, 4, 1}, {"z", 3, 5, 0}};  // old drivers count none
  cloud.data = bytesOf(std::int8_t{-3}) + bytesOf(std::uint16_t{65'535}) + bytesOf(std::int32_t{-70'000});
  EXPECT_EQ(pointsOf(cloud), (std::vector<Point3>{{-3, 65'535, -70'000}}));

  cloud.pointStep = 7;
  cloud.fields = {{"x", 0, 2, 1}, {"y", 1, 3, 1}, {"z", 3, 6, 1}};
  cloud.data =
      bytesOf(std::uint8_t{200}) + bytesOf(std::int16_t{-300}) + bytesOf(std::uint32_t{4'000'000'000});
  EXPECT_EQ(pointsOf(cloud), (std::vector<Point3>{{200, -300, 4'000'000'000}}));
}

TEST(PointCloud2Message, MayHavePointsOfTheOtherByteOrder) {
  WrittenCloud cloud = twoPoints();
  cloud.isBigEndian = 1;
  cloud.data.clear();
  for (const float value : {1.0F, 2.0F, 3.0F, 0.0F, -4.5F, 0.0F, 1e9F, 0.0F}) {
    cloud.data += bytesOf(value, true);
  }
  EXPECT_EQ(pointsOf(cloud), (std::vector<Point3>{{1, 2, 3}, {-4.5, 0, 1e9}}));
}

TEST(PointCloud2Message, MayHaveRowsWithSomethingBetweenThem) {
  WrittenCloud cloud = floatCloud({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}}, 0);
  const std::vector<Point3> points = pointsOf(cloud);
  cloud.height = 2;
  cloud.width = 2;
  cloud.rowStep = 32;
  EXPECT_EQ(pointsOf(cloud), points);
  cloud.data.insert(32, "#####");
  cloud.rowStep = 37;
  EXPECT_EQ(pointsOf(cloud), points);
  cloud.data += "bytes that nobody asks for";
  EXPECT_EQ(pointsOf(cloud), points);
}

TEST(PointCloud2Message, NeedsNoStepOfRowsForOneRow) {
  WrittenCloud cloud = twoPoints();
  for (const std::uint32_t step : {0U, 1U, 0xFFFFFFFFU}) {
    cloud.rowStep = step;
    EXPECT_EQ(pointsOf(cloud).size(), 2U);
  }
}

TEST(PointCloud2Message, MayBeEmptyInEveryWay) {
  EXPECT_TRUE(pointsOf(floatCloud({}, 0)).empty());
  EXPECT_TRUE(pointsOf(WrittenCloud()).empty());
  WrittenCloud cloud = twoPoints();
  cloud.height = 0;
  EXPECT_TRUE(pointsOf(cloud).empty());
}

TEST(PointCloud2Message, SaysWhichColumnIsWrong) {
  WrittenCloud cloud = twoPoints();
  cloud.fields[2].name = "Z\x1b";
  EXPECT_EQ(refusal(cloud), "a point cloud has no column z; it has x, y, Z\\x1b, intensity");
  cloud.fields.clear();
  EXPECT_EQ(refusal(cloud), "a point cloud has no column x");
  cloud.fields.assign(22, {"a", 0, 7, 1});
  EXPECT_TRUE(refusal(cloud).ends_with("has no column x; it has 22 columns")) << refusal(cloud);
  cloud = twoPoints();
  cloud.fields[3].name = "y";
  EXPECT_EQ(refusal(cloud), "a point cloud has two columns y");
  cloud = twoPoints();
  cloud.fields[0].datatype = 9;
  EXPECT_EQ(refusal(cloud),
            "the column x of a point cloud has type 9 and count 1; types 1 to 8 and one value are allowed");
  cloud.fields[0] = {"x", 0, 7, 2};
  EXPECT_EQ(refusal(cloud),
            "the column x of a point cloud has type 7 and count 2; types 1 to 8 and one value are allowed");
  cloud.fields[0] = {"x", 13, 7, 1};
  EXPECT_EQ(refusal(cloud), "the column x of a point cloud ends at byte 17 of a point of 16 bytes");
  cloud.fields[0] = {"x", 0xFFFFFFFF, 7, 1};
  EXPECT_EQ(refusal(cloud), "the column x of a point cloud ends at byte 4294967299 of a point of 16 bytes");
  cloud = twoPoints();
  cloud.pointStep = 3;
  cloud.fields = {{"x", 0, 2, 1}, {"y", 0, 3, 1}, {"z", 1, 3, 1}};
  EXPECT_EQ(refusal(cloud), "the columns x, y and z of a point cloud need 5 bytes, and its points have 3");
}

TEST(PointCloud2Message, SaysWhatIsTorn) {
  WrittenCloud cloud = twoPoints();
  cloud.data.pop_back();
  EXPECT_EQ(refusal(cloud), "a point cloud message is torn: its 1 x 2 points need 32 bytes, and it has 31");
  cloud = twoPoints();
  cloud.width = 0xFFFFFFFF;
  cloud.height = 0xFFFFFFFF;
  EXPECT_EQ(refusal(cloud),
            "a row of a point cloud has 32 bytes; 4294967295 points of 16 bytes need 68719476720");
  cloud.pointStep = 0xFFFFFFFF;
  cloud.height = 1;
  EXPECT_EQ(refusal(cloud),
            "a point cloud message is torn: its 1 x 4294967295 points need 18446744065119617025 "
            "bytes, and it has 32");
  cloud.pointStep = 16;
  cloud.width = 2;
  cloud.height = 0xFFFFFFFF;
  EXPECT_EQ(
      refusal(cloud),
      "a point cloud message is torn: its 4294967295 x 2 points need 137438953440 bytes, and it has 32");
  cloud = twoPoints();
  cloud.height = 2;
  cloud.width = 1;
  cloud.rowStep = 15;
  EXPECT_EQ(refusal(cloud), "a row of a point cloud has 15 bytes; 1 point of 16 bytes need 16");
}

TEST(PointCloud2Message, SaysWhatIsNotOne) {
  const std::string message = asCdr(twoPoints());
  EXPECT_EQ(
      readAlone("\x28\xB5\x2F\xFD" + message)
              .refusal.find(
                  "a point cloud message begins with 40, 181; CDR begins with 0, 0 (big-endian) or 0, 1 "
                  "(little-endian)") != std::string::npos,
      true);
  std::string other = message;
  other[1] = '\2';
  EXPECT_NE(readAlone(other).refusal.find("begins with 0, 2; CDR begins with"), std::string::npos);
  other[0] = '\1';
  other[1] = '\1';
  EXPECT_NE(readAlone(other).refusal.find("begins with 1, 1; CDR begins with"), std::string::npos);
  EXPECT_NE(readAlone("").refusal.find(
                "a point cloud message is too short: at its byte 0 it needs 1 byte and has 0"),
            std::string::npos);
  WrittenCloud cloud = twoPoints();
  cloud.isBigEndian = 2;
  EXPECT_EQ(refusal(cloud),
            "the byte order of a point cloud is 2; 0 (little-endian) and 1 (big-endian) are allowed");
  cloud = twoPoints();
  cloud.fields.resize(1025);
  EXPECT_EQ(refusal(cloud), "a point cloud message has 1025 columns; at most 1024 are allowed");
  cloud.fields.resize(1024);
  EXPECT_EQ(pointsOf(cloud).size(), 2U);
}

TEST(PointCloud2Message, HasStampsOfWholeNanosecondsInASecond) {
  std::string message = asCdr(twoPoints());
  message.replace(8, 4, bytesOf(std::uint32_t{999'999'999}));
  EXPECT_EQ(readAlone(message).clouds.front().stamp, 1'700'000'000'999'999'999);
  message.replace(8, 4, bytesOf(std::uint32_t{1'000'000'000}));
  EXPECT_NE(
      readAlone(message).refusal.find(
          "the stamp of a point cloud message has 1000000000 nanoseconds; less than 1000000000 are allowed"),
      std::string::npos);
}

TEST(PointCloud2Message, SaysWhatItsColumnsAre) {
  WrittenCloud cloud = twoPoints();
  cloud.fields.push_back({"unknown", 0, 9, 1});
  cloud.fields.push_back({"normal", 0, 8, 3});
  const std::string message = asCdr(cloud);
  PointCloud2 read;
  readPointCloud2(testing::viewOf(message), CloudEncoding::cdr, 0, read);
  std::vector<Column> columns(9);
  columnsOf(read, columns);
  ASSERT_EQ(columns.size(), 5U);
  EXPECT_EQ(columns[0].name, "x");
  EXPECT_EQ(columns[0].type, NumberType::F4);
  EXPECT_EQ(columns[4].name, "normal");
  EXPECT_EQ(columns[4].type, NumberType::F8);
  EXPECT_EQ(columns[4].count, 3U);
}

}  // namespace
}  // namespace orvantis::toolkit
