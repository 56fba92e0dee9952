#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/ZoneDetector.h>

#include "classify/ZoneIndex.h"

namespace orvantis::testing {
namespace {

using filter::classify::Curve;
using filter::classify::ZoneIndex;
using namespace filter::detection;

constexpr std::size_t mebibyte = std::size_t{1} << 20U;
// The heights' table, which the bound of the plan's leaves out.
constexpr std::size_t heightBytes = 40000;

std::shared_ptr<Zone3dBase> ring(const std::string& name, double x, double y, double radius,
                                 int numVertices) {
  std::vector<Point> vertices;
  for (int i = 0; i < numVertices; ++i) {
    const double r = i % 2 == 0 ? radius : 0.5 * radius;
    const double bearing = 6.283185307179586 * i / numVertices;
    vertices.emplace_back(x + r * std::cos(bearing), y + r * std::sin(bearing));
  }
  return std::make_shared<Zone3dBase>(std::make_shared<Polygon>(name, vertices), 0.0, 2.0);
}

// 24 zones in a row along the diagonal of a site.
ZoneDetector site(double extent, double radius, int numVertices) {
  ZoneDetector detector;
  for (int i = 0; i < 24; ++i) {
    const double at = extent * i / 23.0;
    detector.setZone(ring("z" + std::to_string(i), at, at, radius, numVertices), i / 3, i % 3);
  }
  return detector;
}

void expectBounded(const ZoneIndex& index) {
  EXPECT_LE(index.bytes(), mebibyte + heightBytes + index.grid().curves.size() * sizeof(Curve));
}

TEST(Grid, CellIsTheLargestPowerOfTwoUpToOne256thOfTheSite) {
  EXPECT_EQ(ZoneIndex(site(90.0, 5.0, 16)).grid().lattice.cell, 0.25);
  EXPECT_EQ(ZoneIndex(site(9.0, 0.5, 16)).grid().lattice.cell, 0.03125);
}

TEST(Grid, LargeSitesAndSmallZonesKeepTheBoundOnMemory) {
  for (const double extent : {0.0, 0.01, 1.0, 1000.0, 1.0e6}) {
    for (const double radius : {0.01, 10.0, 500.0}) {
      SCOPED_TRACE("extent " + std::to_string(extent) + ", radius " + std::to_string(radius));
      expectBounded(ZoneIndex(site(extent, radius, 16)));
    }
  }
}

TEST(Grid, ManyVerticesKeepTheBoundOnMemory) {
  expectBounded(ZoneIndex(site(0.5, 10.0, 2000)));
}

}  // namespace
}  // namespace orvantis::testing
