#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/ZoneDetector.h>

#include "classify/Flags.h"
#include "classify/ZoneIndex.h"

namespace orvantis::testing {
namespace {

using filter::classify::Curve;
using filter::classify::Grid;
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
  // However often it was doubled, the cell is a power of two.
  int exponent = 0;
  EXPECT_EQ(std::frexp(index.grid().lattice.cell, &exponent), 0.5);
}

double cellOf(double width, double height) {
  filter::classify::Bounds site;
  site.include(-0.25 * width, 0.0);
  site.include(0.75 * width, height);
  return filter::classify::suitableCell(site);
}

TEST(Grid, CellIsTheLargestPowerOfTwoUpToOne256thOfTheSite) {
  EXPECT_EQ(ZoneIndex(site(90.0, 5.0, 16)).grid().lattice.cell, 0.25);
  EXPECT_EQ(ZoneIndex(site(9.0, 0.5, 16)).grid().lattice.cell, 0.03125);
  EXPECT_EQ(cellOf(128.0, 128.0), 0.5);
  EXPECT_EQ(cellOf(127.9, 127.9), 0.25);
}

// A long site has as many cells as a square one, up to 2047 along it: a zone far from the others costs less.
TEST(Grid, CellOfALongSiteFollowsFromItsArea) {
  EXPECT_EQ(cellOf(256.0, 64.0), 0.5);
  EXPECT_EQ(cellOf(255.9, 64.0), 0.25);
  EXPECT_EQ(cellOf(64.0, 256.0), 0.5);
  EXPECT_EQ(cellOf(1024.0, 4.0), 1.0);
  EXPECT_EQ(cellOf(1023.0, 4.0), 0.5);
  EXPECT_EQ(cellOf(1024.0, 0.0), 1.0);
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

// Points outside the lattice are looked up at its rim, on whichever side.
TEST(Grid, NoBorderMarksTheRim) {
  std::mt19937_64 random(20260102);
  const auto uniform = [&random](double from, double to) {
    return std::uniform_real_distribution<double>(from, to)(random);
  };
  for (int i = 0; i < 400; ++i) {
    SCOPED_TRACE("case " + std::to_string(i));
    ZoneDetector detector;
    const double from = uniform(-3.0, 3.0);
    const double radius = std::exp2(uniform(-3.0, 3.0));
    detector.setZone(std::make_shared<Zone3dBase>(
                         std::make_shared<Sector>("s", from, from + uniform(0.01, 3.0), radius), 0.0, 2.0),
                     0, 0);
    // Its borders lie between cells.
    const std::vector<Point> corners{{0.0, 0.0}, {std::exp2(i % 4), std::exp2(i % 5)}};
    detector.setZone(std::make_shared<Zone3dBase>(std::make_shared<Rectangle>("r", corners, 0.0), 0.0, 2.0),
                     0, 1);
    const ZoneIndex index(detector);
    const Grid& grid = index.grid();
    const int lastColumn = grid.lattice.columns - 1;
    const int lastRow = grid.lattice.rows - 1;
    for (int column = 0; column <= lastColumn; ++column) {
      for (int row = 0; row <= lastRow; ++row) {
        if (column == 0 || column == lastColumn || row == 0 || row == lastRow) {
          const std::uint16_t code = grid.codes[static_cast<std::size_t>(column * grid.lattice.rows + row)];
          ASSERT_LT(code, grid.firstCut) << column << ", " << row;
          ASSERT_EQ(grid.palette[code] & filter::classify::zoneBits, 0U) << column << ", " << row;
        }
      }
    }
  }
}

}  // namespace
}  // namespace orvantis::testing
