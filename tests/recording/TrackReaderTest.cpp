#include <algorithm>
#include <cmath>
#include <fstream>
#include <memory>
#include <numbers>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "files/Failure.h"
#include "recording/TrackReader.h"
#include "support/TemporaryFolder.h"

namespace orvantis::toolkit {
namespace {

using filter::monitor::Stamp;
using filter::monitor::TrackedObject;
using testing::TemporaryFolder;

const std::string header = "stamp,id,class,x,y,length,width,heading,zmin,zmax\n";

std::vector<TrackFrame> readAll(const std::string& path, TracksFormat format) {
  TrackReader reader(std::make_unique<std::ifstream>(path), path, format);
  std::vector<TrackFrame> frames;
  while (auto frame = reader.next()) {
    frames.push_back(std::move(*frame));
  }
  return frames;
}

std::vector<TrackFrame> read(const std::string& text, TracksFormat format = TracksFormat::Csv) {
  const TemporaryFolder folder;
  return readAll(folder.write("tracks", text), format);
}

// What is said about the file, without the folder it lies in.
std::string refusal(const std::string& text, TracksFormat format = TracksFormat::Csv) {
  const TemporaryFolder folder;
  try {
    readAll(folder.write("tracks", text), format);
  } catch (const Failure& failure) {
    return std::string(failure.what()).substr(folder.path().size());
  }
  return "";
}

std::vector<std::pair<double, double>> corners(const TrackedObject& object) {
  std::vector<std::pair<double, double>> result;
  const auto footprint = object.footprint.getBoostPolygon();
  for (const auto& corner : footprint.outer()) {
    result.emplace_back(corner.x(), corner.y());
  }
  return result;
}

TEST(TrackReader, ReadsEveryColumn) {
  const auto frames = read(header + "-0.25,7,car,10,20,4,2,0,-1.5,0.25\n");
  ASSERT_EQ(frames.size(), 1U);
  EXPECT_EQ(frames[0].stamp, Stamp(-250'000'000));
  ASSERT_EQ(frames[0].objects.size(), 1U);
  const TrackedObject& object = frames[0].objects[0];
  EXPECT_EQ(object.id, 7);
  EXPECT_EQ(object.className, "car");
  EXPECT_EQ(object.zMin, -1.5);
  EXPECT_EQ(object.zMax, 0.25);
  double left = 1e9;
  double right = -1e9;
  double bottom = 1e9;
  double top = -1e9;
  for (const auto& [x, y] : corners(object)) {
    left = std::min(left, x);
    right = std::max(right, x);
    bottom = std::min(bottom, y);
    top = std::max(top, y);
  }
  EXPECT_EQ(std::pair(left, right), std::pair(8.0, 12.0));
  EXPECT_EQ(std::pair(bottom, top), std::pair(19.0, 21.0));
}

TEST(TrackReader, RowsOfOneStampAreOneFrame) {
  const auto frames = read(header +
                           "0,1,,0,0,1,1,0,0,1\n"
                           "0,2,,5,0,1,1,0,0,1\n"
                           "0.10,1,,0,0,1,1,0,0,1\n"
                           "1e-1,2,,5,0,1,1,0,0,1\n"
                           "0.2,1,,0,0,1,1,0,0,1");
  ASSERT_EQ(frames.size(), 3U);
  EXPECT_EQ(frames[0].objects.size(), 2U);
  EXPECT_EQ(frames[1].objects.size(), 2U);
  EXPECT_EQ(frames[1].stamp, Stamp(100'000'000));
  EXPECT_EQ(frames[2].objects.size(), 1U);
}

TEST(TrackReader, SecondsSince1970KeepTheirNanoseconds) {
  const auto frames = read(header +
                           "1699999999.123456789,1,,0,0,1,1,0,0,1\n"
                           "1699999999.12345679,1,,0,0,1,1,0,0,1\n");
  ASSERT_EQ(frames.size(), 2U);
  EXPECT_EQ(frames[0].stamp, Stamp(1'699'999'999'123'456'789));
  EXPECT_EQ(frames[1].stamp, Stamp(1'699'999'999'123'456'790));
}

TEST(TrackReader, LinesMayEndWithCrLfAndBlankOnesAreSkipped) {
  const auto frames =
      read("stamp,id,class,x,y,length,width,heading,zmin,zmax\r\n0,1,a,0,0,1,1,0,0,1\r\n\r\n");
  ASSERT_EQ(frames.size(), 1U);
  EXPECT_EQ(frames[0].objects[0].zMax, 1.0);
}

TEST(TrackReader, AByteOrderMarkIsPassedOver) {
  EXPECT_EQ(read("\xEF\xBB\xBF" + header + "0,1,,0,0,1,1,0,0,1\n").size(), 1U);
  EXPECT_NE(refusal("\xEF\xBB" + header), "");
}

TEST(TrackReader, LabelsGivenAsCsvGetTheHint) {
  const std::string text = "0 1 Car 0 1 0.9 10 20 30 40 1.5 1.8 4.2 3 1.7 20 0\n";
  EXPECT_EQ(refusal(text),
            "tracks:1:1: the header must be stamp,id,class,x,y,length,width,heading,zmin,zmax; this looks "
            "like KITTI "
            "labels: --tracks-format kitti reads them");
}

TEST(TrackReader, IdsBelowZeroMayRepeat) {
  EXPECT_EQ(read(header + "0,-1,,0,0,1,1,0,0,1\n0,-1,,5,0,1,1,0,0,1\n")[0].objects.size(), 2U);
}

TEST(TrackReader, AHeaderWithoutRowsIsNoFrame) {
  EXPECT_TRUE(read(header).empty());
}

TEST(TrackReader, AnotherHeaderIsRefused) {
  const std::string reason = ": the header must be stamp,id,class,x,y,length,width,heading,zmin,zmax";
  EXPECT_EQ(refusal("id,stamp,class,x,y,length,width,heading,zmin,zmax\n"), "tracks:1:1" + reason);
  EXPECT_EQ(refusal("0,1,,0,0,1,1,0,0,1\n"), "tracks:1:1" + reason);
  EXPECT_EQ(refusal(""), "tracks:1:1" + reason);
}

const std::string kittiRow = "Car 0 1 0.9 10 20 30 40 1.5 1.8 4.2 ";  // up to height, width and length

TEST(TrackReader, KittiIsTurnedToTheLevelPlane) {
  // 3 m to the right of the camera, 1.7 m below it, 20 m ahead; facing to the right at rotation 0.
  const auto frames = read("12 7 " + kittiRow + "3 1.7 20 0\n", TracksFormat::Kitti);
  ASSERT_EQ(frames.size(), 1U);
  EXPECT_EQ(frames[0].stamp, Stamp(1'200'000'000));
  const TrackedObject& object = frames[0].objects[0];
  EXPECT_EQ(object.id, 7);
  EXPECT_EQ(object.className, "Car");
  EXPECT_EQ(object.zMin, -1.7);
  EXPECT_EQ(object.zMax, 1.5 - 1.7);
  double nearest = 1e9;
  double farthest = -1e9;
  double rightmost = 1e9;
  for (const auto& [x, y] : corners(object)) {
    nearest = std::min(nearest, x);
    farthest = std::max(farthest, x);
    rightmost = std::min(rightmost, y);
  }
  // Its length lies across the view: x forward 20 ± 0.9, y left -3 ± 2.1.
  EXPECT_NEAR(nearest, 19.1, 1e-12);
  EXPECT_NEAR(farthest, 20.9, 1e-12);
  EXPECT_NEAR(rightmost, -5.1, 1e-12);
}

TEST(TrackReader, KittiRotationTurnsClockwiseSeenFromAbove) {
  // An eighth of a turn from facing right: now facing back and to the right, so the front right corner is
  // the one that is nearest.
  const auto frames =
      read("0 7 Car 0 1 0.9 10 20 30 40 1.5 0 2 0 0 20 " + std::to_string(std::numbers::pi / 4) + "\n",
           TracksFormat::Kitti);
  double nearest = 1e9;
  double atNearest = 0.0;
  for (const auto& [x, y] : corners(frames[0].objects[0])) {
    if (x < nearest) {
      nearest = x;
      atNearest = y;
    }
  }
  EXPECT_NEAR(nearest, 20.0 - std::sqrt(0.5), 1e-6);
  EXPECT_NEAR(atNearest, -std::sqrt(0.5), 1e-6);
}

TEST(TrackReader, KittiRowsWithoutObjectAreAFrameAllTheSame) {
  const auto frames = read(
      "0 -1 DontCare -1 -1 -10 1 2 3 4 -1000 -1000 -1000 -10 -1 -1 -1\n"
      "1 3 " +
          kittiRow +
          "0 0 10 0\n"
          "1 -1 DontCare -1 -1 -10 1 2 3 4 -1000 -1000 -1000 -10 -1 -1 -1\n"
          "1 4 " +
          kittiRow + "0 0 20 0 0.99\n",
      TracksFormat::Kitti);
  ASSERT_EQ(frames.size(), 2U);
  EXPECT_TRUE(frames[0].objects.empty());
  EXPECT_EQ(frames[1].objects.size(), 2U);
}

TEST(TrackReader, TheBoxOfAnObjectIsExactlyTheOneItsFootprintIsMadeOf) {
  const Pose pose(1.0, 2.0, 0.5, 3.0, 4.0, 33.0);
  const std::string kitti = "0 7 Car 0 0 0 0 0 0 0 1.5 1.7 4.1 2.5 1.25 9.1 0.3\n";
  for (const auto& [text, format] :
       {std::pair(header + "0,7,car,0.1,0.2,4.1,1.7,0.3,0,1.5\n0,8,,9.7,8.3,0.7,0.6,-2.9,0,1.5\n",
                  TracksFormat::Csv),
        std::pair(kitti, TracksFormat::Kitti)}) {
    TrackReader reader(std::make_unique<std::istringstream>(text), "tracks", format, pose);
    const TrackFrame frame = reader.next().value();
    ASSERT_FALSE(frame.objects.empty());
    ASSERT_EQ(frame.boxes.size(), frame.objects.size());
    for (std::size_t i = 0; i < frame.boxes.size(); ++i) {
      const TrackBox& box = frame.boxes[i];
      const core::State made(box.x, box.y, box.length, box.width, box.heading);
      const auto& expected = frame.objects[i].footprint.polygon().outer();
      ASSERT_EQ(made.polygon().outer().size(), expected.size());
      for (std::size_t k = 0; k < expected.size(); ++k) {
        EXPECT_EQ(made.polygon().outer()[k].x(), expected[k].x());
        EXPECT_EQ(made.polygon().outer()[k].y(), expected[k].y());
      }
      EXPECT_EQ(made.centre()->x(), frame.objects[i].footprint.centre()->x());
    }
  }
}

}  // namespace
}  // namespace orvantis::toolkit
