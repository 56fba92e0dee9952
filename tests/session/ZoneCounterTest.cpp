#include <array>
#include <limits>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>

#include "session/ZoneCounter.h"

namespace orvantis::toolkit {
namespace {

using filter::classify::PointClassifier;
using filter::detection::Point;
using filter::detection::Polygon;
using filter::detection::Sector;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

using Cloud = std::vector<std::array<double, 3>>;

Points viewOf(const Cloud& points) {
  return filter::classify::PointsView<double>::interleaved(points.data(), 3 * sizeof(double), points.size());
}

std::shared_ptr<Zone3dBase> square(double low, double high, double zMin, double zMax) {
  const std::vector<Point> corners = {{low, low}, {low, high}, {high, high}, {high, low}};
  return std::make_shared<Zone3dBase>(std::make_shared<Polygon>("square", corners), zMin, zMax);
}

TEST(ZoneCounter, CountsEveryZoneThatHoldsAPointUnlessAnExclusionZoneDoes) {
  ZoneDetector detector;
  detector.setZone(square(0.0, 4.0, 0.0, 2.0), 0, 0);
  detector.setZone(square(2.0, 6.0, 0.0, 2.0), 7, 2);
  detector.appendExclusionZone(
      std::make_shared<Zone3dBase>(std::make_shared<Sector>("disc", 0.0, 0.0, 1.5), 0.0, 2.0));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const Cloud cloud = {
      {3.0, 3.0, 1.0},   // both zones
      {5.0, 5.0, 1.0},   // the second
      {1.9, 1.9, 2.0},   // the first, at its upper height
      {1.9, 1.9, 2.1},   // above
      {1.0, 1.0, 1.0},   // the first, but excluded
      {-0.5, 0.0, 1.0},  // excluded, in no zone
      {1.0, 1.0, 3.0},   // above the exclusion zone too
      {nan, 3.0, 1.0},  {3.0, infinity, 1.0}, {3.0, 3.0, -infinity},
  };
  const auto counts = countZoneByZone(detector, viewOf(cloud));
  EXPECT_EQ(counts.inside[static_cast<std::size_t>(PointClassifier::zoneBit(0, 0))], 2U);
  EXPECT_EQ(counts.inside[static_cast<std::size_t>(PointClassifier::zoneBit(7, 2))], 2U);
  EXPECT_EQ(counts.excluded, 2U);
  EXPECT_EQ(counts.noReturns, 3U);
}

TEST(ZoneCounter, AZoneWithoutShapeHoldsNothing) {
  ZoneDetector detector;
  detector.setZone(std::make_shared<Zone3dBase>(), 0, 0);
  EXPECT_EQ(countZoneByZone(detector, viewOf({{0.0, 0.0, 1.0}})).inside[0], 0U);
}

}  // namespace
}  // namespace orvantis::toolkit
