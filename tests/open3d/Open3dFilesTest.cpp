// Random clouds that Open3D wrote into every kind of file that it and the toolkit know: the toolkit reads the
// points that Open3D reads back, bit for bit, and zones have the same counts.

#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <open3d/geometry/PointCloud.h>
#include <open3d/io/PointCloudIO.h>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>
#include <filter/detection/ZoneDetector.h>

#include "FrameFiles.h"
#include "recording/FrameReader.h"
#include "support/TemporaryFolder.h"

namespace orvantis::toolkit {
namespace {

using filter::classify::PointClassifier;
using filter::classify::PointsView;
using filter::classify::ZoneCounts;
using testing::Point;

struct Kind {
  std::string ending;
  bool isAscii;
  bool isCompressed;
  bool isExact;  // what was written comes back, rounded to float where the file has floats
};

std::ostream& operator<<(std::ostream& out, const Kind& kind) {
  return out << kind.ending << (kind.isAscii ? " ascii" : "") << (kind.isCompressed ? " compressed" : "");
}

std::vector<Kind> kinds() {
  return {{".pcd", false, false, true}, {".pcd", false, true, true},  {".pcd", true, false, false},
          {".ply", false, false, true}, {".ply", true, false, false}, {".xyz", true, false, false},
          {".pts", true, false, false}};
}

// Coordinates of a site; some far away, some next to zero.
std::vector<Point> randomCloud(std::size_t size, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  std::uniform_real_distribution<double> near(-60.0, 60.0);
  const auto coordinate = [&] {
    const double value = near(random);
    const auto kind = random() % 16;
    return kind == 0 ? value * 1e4 : kind == 1 ? value * 1e-5 : value;
  };
  std::vector<Point> points;
  for (std::size_t i = 0; i < size; ++i) {
    const double x = coordinate();
    const double y = coordinate();
    points.push_back({x, y, coordinate() / 20.0});
  }
  return points;
}

filter::detection::ZoneDetector site() {
  using filter::detection::Zone3dBase;
  filter::detection::ZoneDetector detector;
  const std::vector<filter::detection::Point> ring = {
      {-30.5, -20.25}, {25.0, -30.75}, {40.125, 20.0}, {-10, 45}};
  detector.setZone(
      std::make_shared<Zone3dBase>(std::make_shared<filter::detection::Polygon>("lane", ring), -1.0, 1.5), 0,
      0);
  detector.setZone(std::make_shared<Zone3dBase>(
                       std::make_shared<filter::detection::Sector>("arc", 12.5, 140.0, 50.0), -0.5, 3.0),
                   1, 2);
  return detector;
}

std::string hexOf(const std::vector<Point>& points, bool areFloats) {
  std::string text;
  for (const Point& point : points) {
    for (const double value : point) {
      char number[40];
      std::snprintf(number, sizeof(number), "%a ",
                    areFloats ? static_cast<double>(static_cast<float>(value)) : value);
      text += number;
    }
    text += '\n';
  }
  return text;
}

ZoneCounts countsOf(const PointClassifier& classifier, const std::vector<Point>& points, bool areFloats) {
  if (!areFloats) {
    return classifier.count(PointsView<double>::interleaved(points.data(), sizeof(Point), points.size()));
  }
  std::vector<float> floats;
  for (const Point& point : points) {
    for (const double value : point) {
      floats.push_back(static_cast<float>(value));
    }
  }
  return classifier.count(PointsView<float>::interleaved(floats.data(), 3 * sizeof(float), points.size()));
}

class Open3dFiles : public ::testing::TestWithParam<Kind> {};

TEST_P(Open3dFiles, GiveThePointsThatOpen3dReadsBack) {
  const Kind& kind = GetParam();
  const testing::TemporaryFolder folder;
  const std::string path = folder.path("cloud" + kind.ending);
  const PointClassifier classifier(site());
  FrameReader reader;
  for (const std::size_t size : {std::size_t{1}, std::size_t{100}, std::size_t{20000}}) {
    SCOPED_TRACE(::testing::Message() << "cloud of " << size);
    const std::vector<Point> written = randomCloud(size, size);
    open3d::geometry::PointCloud cloud;
    for (const auto& [x, y, z] : written) {
      cloud.points_.emplace_back(x, y, z);
    }
    ASSERT_TRUE(open3d::io::WritePointCloud(path, cloud, {kind.isAscii, kind.isCompressed}));
    open3d::geometry::PointCloud back;
    ASSERT_TRUE(open3d::io::ReadPointCloud(path, back));
    std::vector<Point> expected;
    for (const auto& point : back.points_) {
      expected.push_back({point.x(), point.y(), point.z()});
    }

    const std::string bytes = testing::readAll(path);
    const Frame frame = reader.read(testing::bytesOf(bytes), frameKindOf(path).value());
    const bool areFloats = testing::areFloats(frame.points);
    const std::vector<Point> points = testing::pointsOf(frame.points);
    ASSERT_EQ(points.size(), size);
    ASSERT_EQ(hexOf(points, false), hexOf(expected, areFloats));
    if (kind.isExact) {
      ASSERT_EQ(hexOf(points, false), hexOf(written, areFloats));
    }
    const ZoneCounts counts =
        std::visit([&](const auto& view) { return classifier.count(view); }, frame.points);
    const ZoneCounts expectedCounts = countsOf(classifier, expected, areFloats);
    EXPECT_EQ(counts.inside, expectedCounts.inside);
    EXPECT_TRUE(size < 100 || counts.inside[0] != 0);
  }
}

INSTANTIATE_TEST_SUITE_P(EveryKind, Open3dFiles, ::testing::ValuesIn(kinds()), [](const auto& tested) {
  const Kind& kind = tested.param;
  return kind.ending.substr(1) + (kind.isCompressed ? "Compressed" : kind.isAscii ? "Ascii" : "Binary");
});

}  // namespace
}  // namespace orvantis::toolkit
