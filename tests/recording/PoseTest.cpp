#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <Eigen/Geometry>
#include <gtest/gtest.h>

#include "FrameFiles.h"
#include "recording/PointMover.h"
#include "recording/Pose.h"
#include "recording/TrackReader.h"

namespace orvantis::toolkit {
namespace {

using filter::classify::PointsView;
using testing::Point;

TEST(Pose, TheDefaultChangesNothing) {
  EXPECT_EQ(Pose()(1.1, -2.2, 3.3), (Point{1.1, -2.2, 3.3}));
  EXPECT_EQ(Pose(0, 0, 0, 360, -720, 0)(1.1, -2.2, 3.3), (Point{1.1, -2.2, 3.3}));
  EXPECT_EQ(Pose().heading(1.25), 1.25);
}

TEST(Pose, RightAnglesTurnExactly) {
  const double x = 1.1;
  const double y = 2.2;
  const double z = 3.3;
  EXPECT_EQ(Pose(0, 0, 0, 0, 0, 90)(x, y, z), (Point{-y, x, z}));
  EXPECT_EQ(Pose(0, 0, 0, 0, 0, -90)(x, y, z), (Point{y, -x, z}));
  EXPECT_EQ(Pose(0, 0, 0, 0, 0, 180)(x, y, z), (Point{-x, -y, z}));
  EXPECT_EQ(Pose(0, 0, 0, 0, 0, 450)(x, y, z), (Point{-y, x, z}));
  EXPECT_EQ(Pose(0, 0, 0, 90, 0, 0)(x, y, z), (Point{x, -z, y}));
  EXPECT_EQ(Pose(0, 0, 0, 0, 90, 0)(x, y, z), (Point{z, y, -x}));
  // Hanging upside down, 4 m up.
  EXPECT_EQ(Pose(10, 20, 4, 180, 0, 0)(x, y, 1.5), (Point{11.1, 17.8, 2.5}));
}

TEST(Pose, TurnsByRollThenPitchThenYawThenMoves) {
  // x, turned by pitch, points down; then yaw turns about what points up.
  const Point down = Pose(0, 0, 10, 0, 90, 45)(2, 0, 0);
  EXPECT_NEAR(down[0], 0, 1e-15);
  EXPECT_NEAR(down[1], 0, 1e-15);
  EXPECT_EQ(down[2], 8);
  // y, turned by roll, points up, and pitch then lays it along x.
  EXPECT_EQ(Pose(0, 0, 0, 90, 90, 0)(0, 1, 0), (Point{1, 0, 0}));
}

// The sine of this angle is rounded up; libraries differ in that bit.
TEST(Pose, TurnsToTheSameBitsOnEveryMachine) {
  const Point turned = Pose(0, 0, 0, 0, 0, 2.1535)(1, 0, 0);
  EXPECT_EQ(turned[0], 0x1.ffa36dea3218cp-1);
  EXPECT_EQ(turned[1], 0x1.33d44bd0da6a1p-5);
  // The bearing of the cosine and sine of 0.16, rounded down.
  EXPECT_EQ(Pose(0, 0, 0, 360, 0.0, 0).heading(0.16), 0.16);
  EXPECT_EQ(Pose(0, 0, 0, 180, 0, 0).heading(0.16), -0x1.47ae147ae147bp-3);
}

TEST(Pose, AgreesWithAnotherLibrary) {
  std::mt19937 random(12);
  std::uniform_real_distribution<double> metres(-50, 50);
  std::uniform_real_distribution<double> degrees(-400, 400);
  constexpr double radians = std::numbers::pi / 180.0;
  for (int round = 0; round < 2000; ++round) {
    const double roll = degrees(random);
    const double pitch = degrees(random);
    const double yaw = degrees(random);
    const Eigen::Vector3d offset(metres(random), metres(random), metres(random));
    const Eigen::Vector3d point(metres(random), metres(random), metres(random));
    const Eigen::Vector3d expected =
        Eigen::AngleAxisd(yaw * radians, Eigen::Vector3d::UnitZ()) *
            (Eigen::AngleAxisd(pitch * radians, Eigen::Vector3d::UnitY()) *
             (Eigen::AngleAxisd(roll * radians, Eigen::Vector3d::UnitX()) * point)) +
        offset;
    const Pose pose(offset.x(), offset.y(), offset.z(), roll, pitch, yaw);
    const Point moved = pose(point.x(), point.y(), point.z());
    for (int axis = 0; axis < 3; ++axis) {
      ASSERT_NEAR(moved[static_cast<std::size_t>(axis)], expected[axis], 1e-12);
    }
    const double heading = metres(random);
    const Eigen::Vector3d along = Eigen::AngleAxisd(yaw * radians, Eigen::Vector3d::UnitZ()) *
                                  (Eigen::AngleAxisd(pitch * radians, Eigen::Vector3d::UnitY()) *
                                   (Eigen::AngleAxisd(roll * radians, Eigen::Vector3d::UnitX()) *
                                    Eigen::Vector3d(std::cos(heading), std::sin(heading), 0)));
    const double other = pose.heading(heading);
    ASSERT_NEAR(std::cos(other) * along.y() - std::sin(other) * along.x(), 0, 1e-12);
    ASSERT_GT(std::cos(other) * along.x() + std::sin(other) * along.y(), 0);
  }
}

TEST(Pose, ALevelSensorOnlyAddsItsYawToHeadings) {
  EXPECT_EQ(Pose(1, 2, 3, 0, 360, 90).heading(5.0), 5.0 + std::numbers::pi / 2);
  EXPECT_EQ(Pose(1, 2, 3, 0, 0, -450).heading(5.0), 5.0 - std::numbers::pi / 2);
  // What points straight up has no heading.
  EXPECT_EQ(Pose(0, 0, 0, 0, -90, 45).heading(0.0), 0.0);
}

TEST(Pose, IsReadFromText) {
  EXPECT_EQ(Pose::parse("1,2,3,0,0,90")(1, 0, 0), (Point{1, 3, 3}));
  EXPECT_EQ(Pose::parse("-0.5, 2e1 ,3,180,0,-90.0")(1, 0, 0), (Point{-0.5, 19, 3}));
  for (const std::string text : {"", "1,2,3", "1,2,3,4,5", "1,2,3,4,5,6,7", "1,2,3,4,5,x", "1,2,3,4,5,nan",
                                 "1,2,3,4,5,", "1,2,3,inf,5,6", "1 2 3 4 5 6", "1,2,3,4,5,6m"}) {
    try {
      Pose::parse(text);
      ADD_FAILURE() << text;
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(error.what(),
                "\"" + text + "\" is not a pose; give x,y,z,roll,pitch,yaw: metres and degrees, six numbers");
    }
  }
}

template <typename Real>
void expectMoved(std::size_t size) {
  std::mt19937 random(13);
  std::vector<Real> records(4 * size);
  for (Real& value : records) {
    value = static_cast<Real>(random() % 2000) / 16 - 60;
  }
  const Pose pose(1.5, -2.5, 3.5, 3, -4, 50);
  PointMover mover;
  const Points points = PointsView<Real>::interleaved(records.data(), 4 * sizeof(Real), size);
  const Points moved = mover.move(points, pose);
  ASSERT_TRUE(std::holds_alternative<PointsView<Real>>(moved));
  const std::vector<Point> result = testing::pointsOf(moved);
  ASSERT_EQ(result.size(), size);
  for (std::size_t i = 0; i < size; ++i) {
    const Point expected = pose(static_cast<double>(records[4 * i]), static_cast<double>(records[4 * i + 1]),
                                static_cast<double>(records[4 * i + 2]));
    for (std::size_t axis = 0; axis < 3; ++axis) {
      ASSERT_EQ(result[i][axis], static_cast<double>(static_cast<Real>(expected[axis])));
    }
  }
}

TEST(PointMover, MovesEveryPointInDoubleAndKeepsTheType) {
  for (const std::size_t size : {0U, 1U, 255U, 256U, 257U, 1000U}) {
    expectMoved<float>(size);
    expectMoved<double>(size);
  }
}

TEST(PointMover, WhatIsNotFiniteStaysSo) {
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  constexpr float infinity = std::numeric_limits<float>::infinity();
  const std::vector<float> x = {nan, 0, 0, infinity, 1};
  const std::vector<float> y = {0, nan, 0, 0, -infinity};
  const std::vector<float> z = {0, 0, nan, 0, 2};
  PointMover mover;
  const Points points = PointsView<float>::separate(x.data(), y.data(), z.data(), x.size());
  for (const Pose& pose : {Pose(), Pose(1, 2, 3, 90, 0, 90), Pose(1, 2, 3, 4, 5, 6)}) {
    for (const Point& point : testing::pointsOf(mover.move(points, pose))) {
      EXPECT_FALSE(std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]));
    }
  }
}

std::vector<TrackFrame> tracks(const std::string& text, TracksFormat format, const Pose& pose) {
  TrackReader reader(std::make_unique<std::istringstream>(text), "tracks", format, pose);
  std::vector<TrackFrame> frames;
  while (auto frame = reader.next()) {
    frames.push_back(std::move(*frame));
  }
  return frames;
}

TEST(TrackReader, ObjectsComeOutInTheFrameOfTheSite) {
  const std::string text = "stamp,id,class,x,y,length,width,heading,zmin,zmax\n0,1,car,10,0,4,2,0,-1.5,0.5\n";
  const auto frames = tracks(text, TracksFormat::Csv, Pose(100, 200, 3, 0, 0, 90));
  ASSERT_EQ(frames.size(), 1U);
  const filter::monitor::TrackedObject& object = frames[0].objects.at(0);
  ASSERT_TRUE(object.footprint.centre());
  EXPECT_EQ(object.footprint.centre()->x(), 100);
  EXPECT_EQ(object.footprint.centre()->y(), 210);
  EXPECT_EQ(object.zMin, 1.5);
  EXPECT_EQ(object.zMax, 3.5);
  EXPECT_EQ(object.className, "car");
  // 4 m along y now, and 2 m along x.
  for (const auto& vertex : object.footprint.polygon().outer()) {
    EXPECT_NEAR(std::fabs(vertex.x() - 100), 1, 1e-12);
    EXPECT_NEAR(std::fabs(vertex.y() - 210), 2, 1e-12);
  }
}

TEST(TrackReader, ATiltedSensorLowersWhatIsFarAndKeepsItUpright) {
  const std::string text = "stamp,id,class,x,y,length,width,heading,zmin,zmax\n0,1,,10,0,4,2,0,-1,1\n";
  const auto frames = tracks(text, TracksFormat::Csv, Pose(0, 0, 6, 0, 30, 0));
  const filter::monitor::TrackedObject& object = frames.at(0).objects.at(0);
  EXPECT_NEAR(object.footprint.centre()->x(), 10 * std::cos(std::numbers::pi / 6), 1e-12);
  EXPECT_NEAR(object.zMin, 0, 1e-12);
  EXPECT_NEAR(object.zMax, 2, 1e-12);
}

TEST(TrackReader, KittiLabelsAreMovedToo) {
  const std::string text = "0 1 Car 0 0 0 0 0 0 0 1.5 2 4 3 1 20 0\n";
  const auto frames = tracks(text, TracksFormat::Kitti, Pose(5, 6, 7, 0, 0, 180));
  const filter::monitor::TrackedObject& object = frames.at(0).objects.at(0);
  EXPECT_EQ(object.footprint.centre()->x(), -15);
  EXPECT_EQ(object.footprint.centre()->y(), 9);
  EXPECT_EQ(object.zMin, 6);
  EXPECT_EQ(object.zMax, 7.5);
}

}  // namespace
}  // namespace orvantis::toolkit
