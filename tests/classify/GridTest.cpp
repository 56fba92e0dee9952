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
#include "classify/Lattice.h"
#include "classify/ZoneIndex.h"

namespace orvantis::testing {
namespace {

using filter::classify::Axis;
using filter::classify::Bounds;
using filter::classify::Curve;
using filter::classify::Grid;
using filter::classify::Lattice;
using filter::classify::Patch;
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

Lattice latticeOver(const std::vector<Bounds>& zones) {
  return filter::classify::Lattices(zones).coarser(1.0);
}

Bounds box(double minX, double minY, double maxX, double maxY) {
  Bounds bounds;
  bounds.include(minX, minY);
  bounds.include(maxX, maxY);
  return bounds;
}

TEST(Grid, HasAboutAsManyCellsWhateverTheSite) {
  for (const double extent : {0.1, 9.0, 90.0, 1.0e4}) {
    const ZoneIndex index(site(extent, extent / 20.0, 16));
    const Grid& grid = index.grid();
    EXPECT_GT(grid.codes.size(), 0x1p17) << extent;
    EXPECT_LT(grid.codes.size(), 1.05 * 0x1p17) << extent;
    EXPECT_EQ(grid.columns.stepsPerUnit, grid.rows.stepsPerUnit);
  }
}

TEST(Grid, OfALongSiteHasAtMostAbout2000CellsAlongIt) {
  const Lattice lattice = latticeOver({box(0.0, 0.0, 1000.0, 0.5), box(300.0, 0.0, 1000.0, 1.0)});
  EXPECT_NEAR(lattice.cell, 0.5, 1.0e-6);
  EXPECT_EQ(lattice.columns.size(), 2007);
  EXPECT_EQ(lattice.rows.size(), 9);
  EXPECT_NEAR(latticeOver({box(0.0, 0.0, 0.0, 1000.0)}).cell, 0.5, 1.0e-6);
}

// A float holds no position on finer cells.
TEST(Grid, CellsAreNotFinerThanCoordinates) {
  EXPECT_NEAR(latticeOver({box(5.0e6, 0.0, 5.0e6 + 1.0, 1.0)}).cell, 1.0e7 / 0x1p22, 1.0e-5);
  EXPECT_NEAR(latticeOver({box(0.0, 0.0, 1.0e-9, 1.0e-9)}).cell, 0x1p-13, 1.0e-9);
}

// A zone far from the others costs its own columns and rows, not larger cells.
TEST(Grid, LeavesWideGapsOut) {
  const Bounds near = box(-40.0, -40.0, 40.0, 40.0);
  const double cell = latticeOver({near}).cell;
  for (const double far : {500.0, 1.0e3, 1.0e4, 1.0e5}) {
    const Lattice diagonal = latticeOver({near, box(far, -far, far + 10.0, 10.0 - far)});
    EXPECT_LT(diagonal.cell, 1.2 * cell) << far;
    EXPECT_EQ(diagonal.columns.folding().numPieces, 2U);
    EXPECT_EQ(diagonal.rows.folding().numPieces, 2U);
    const Lattice beside = latticeOver({near, box(far, 0.0, far + 10.0, 10.0)});
    EXPECT_LT(beside.cell, 1.1 * cell) << far;
    EXPECT_EQ(beside.columns.folding().numPieces, 2U);
    EXPECT_EQ(beside.rows.folding().numPieces, 1U);
  }
}

TEST(Grid, KeepsGapsThatAreNotHalfOfWhatIsLeft) {
  using Intervals = std::vector<Axis::Interval>;
  const auto pieces = [](const Intervals& intervals) {
    std::string text;
    for (const Axis::Interval& piece : filter::classify::piecesOf(intervals)) {
      text += std::to_string(std::lround(piece.low)) + ".." + std::to_string(std::lround(piece.high)) + " ";
    }
    return text;
  };
  EXPECT_EQ(pieces({}), "");
  EXPECT_EQ(pieces({{3.0, 5.0}}), "3..5 ");
  EXPECT_EQ(pieces({{20.0, 30.0}, {0.0, 10.0}}), "0..30 ");
  EXPECT_EQ(pieces({{21.0, 30.0}, {0.0, 10.0}, {2.0, 5.0}}), "0..30 ");
  EXPECT_EQ(pieces({{26.0, 30.0}, {0.0, 10.0}, {8.0, 12.0}}), "0..30 ");
  EXPECT_EQ(pieces({{28.0, 30.0}, {0.0, 10.0}, {8.0, 12.0}}), "0..12 28..30 ");
  // The widest three gaps at most.
  EXPECT_EQ(pieces({{0.0, 1.0}, {11.0, 12.0}, {112.0, 113.0}, {1113.0, 1114.0}, {11114.0, 11115.0}}),
            "0..12 112..113 1113..1114 11114..11115 ");
}

// The margins on both sides of a gap that is narrow beside the cells would overlap.
TEST(Grid, KeepsGapsThatTheMarginsWouldFill) {
  const double cell = 1.0e7 / 0x1p22;
  const auto numPieces = [&](double gap) {
    return latticeOver({box(5.0e6 - 1.0, 0.0, 5.0e6, 1.0), box(5.0e6 + gap, 0.0, 5.0e6 + gap + 1.0, 1.0)})
        .columns.folding()
        .numPieces;
  };
  EXPECT_EQ(numPieces(7.9 * cell), 1U);
  EXPECT_EQ(numPieces(8.1 * cell), 2U);
}

// Every place has one cell, and its neighbour the next or the same.
TEST(Grid, CellsAreNumberedAcrossGaps) {
  const Lattice lattice =
      latticeOver({box(0.0, 0.0, 10.0, 10.0), box(100.0, 0.0, 101.0, 10.0), box(2000.0, 0.0, 2003.0, 10.0)});
  const filter::classify::Folding& columns = lattice.columns.folding();
  ASSERT_EQ(columns.numPieces, 3U);
  int before = 0;
  for (double x = -10.0; x < 2100.0; x += 0.25 * lattice.cell) {
    const int number = columns.number(static_cast<float>(x));
    ASSERT_GE(number, before) << x;
    ASSERT_LE(number, before + 1) << x;
    before = number;
    const bool isNearZone = (x > 0.0 && x < 10.0) || (x > 100.0 && x < 101.0) || (x > 2000.0 && x < 2003.0);
    if (isNearZone) {
      const Patch patch = lattice.patchOf(box(x, 1.0, x, 2.0));
      ASSERT_EQ(patch.firstColumn + patch.column(x), number) << x;
    }
  }
  EXPECT_EQ(before + 1, lattice.columns.size());
  EXPECT_EQ(columns.number(-1.0e9F), 0);
  EXPECT_EQ(columns.number(50.0F), columns.number(20.0F));
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
    const int lastColumn = grid.columns.last();
    const int lastRow = grid.rows.last();
    for (int column = 0; column <= lastColumn; ++column) {
      for (int row = 0; row <= lastRow; ++row) {
        if (column == 0 || column == lastColumn || row == 0 || row == lastRow) {
          const std::uint16_t code = grid.codes[static_cast<std::size_t>(column * (lastRow + 1) + row)];
          ASSERT_LT(code, grid.firstCut) << column << ", " << row;
          ASSERT_EQ(grid.palette[code] & filter::classify::zoneBits, 0U) << column << ", " << row;
        }
      }
    }
  }
}

}  // namespace
}  // namespace orvantis::testing
