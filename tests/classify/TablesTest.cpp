#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <ostream>
#include <random>
#include <sstream>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <hwy/highway.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/ZoneDetector.h>

#include "classify/FrozenZones.h"
#include "classify/Heights.h"
#include "classify/Lookup.h"
#include "classify/ZoneIndex.h"

namespace orvantis::testing {
namespace {

using filter::classify::CrossedCell;
using filter::classify::Decision;
using filter::classify::Grid;
using filter::classify::Heights;
using filter::classify::ZoneIndex;
using namespace filter::detection;

// What the tables of the plan decide. What they leave open is answered by the zones themselves, so no verdict
// shows when it becomes more: it only takes longer.
struct Decided {
  std::size_t setCells = 0;      // cells that one set of zones holds
  std::size_t cutCells = 0;      // cells that one border crosses
  std::size_t crossedCells = 0;  // cells that several borders cross
  std::size_t knownSides = 0;    // in the tangled cells, combinations of sides with a verdict
  std::size_t insideSides = 0;   // and of these, inside
  std::size_t knownSets = 0;     // in the crossed cells, combinations of sides with a set of zones
  std::size_t curves = 0;

  bool operator==(const Decided&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Decided& d) {
  return out << "{" << d.setCells << ", " << d.cutCells << ", " << d.crossedCells << ", " << d.knownSides
             << ", " << d.insideSides << ", " << d.knownSets << ", " << d.curves << "}";
}

Decided decidedBy(const Grid& grid) {
  Decided decided;
  const std::size_t size = grid.codes.size() - 2;
  for (std::size_t i = 0; i < size; ++i) {
    const std::uint16_t code = grid.codes[i];
    ++(code < grid.firstCut       ? decided.setCells
       : code < grid.firstCrossed ? decided.cutCells
                                  : decided.crossedCells);
  }
  for (const Decision& decision : grid.decisions) {
    decided.knownSides += static_cast<std::size_t>(std::popcount(static_cast<unsigned>(decision.known)));
    decided.insideSides += static_cast<std::size_t>(std::popcount(static_cast<unsigned>(decision.inside)));
  }
  for (const CrossedCell& cell : grid.crossedCells) {
    for (const std::uint16_t set : cell.zonesOn) {
      decided.knownSets += set != CrossedCell::noSet ? 1U : 0U;
    }
  }
  decided.curves = grid.curves.size();
  return decided;
}

void add(ZoneDetector& detector, int number, const std::shared_ptr<Zone>& shape, double zMin = 0.0,
         double zMax = 2.0) {
  detector.setZone(std::make_shared<Zone3dBase>(shape, zMin, zMax), number / 3, number % 3);
}

Decided decidedBy(const std::vector<std::shared_ptr<Zone>>& shapes) {
  ZoneDetector detector;
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    add(detector, static_cast<int>(i), shapes[i]);
  }
  return decidedBy(ZoneIndex(detector).grid());
}

std::shared_ptr<Zone> sector(double from, double to, double radius) {
  return std::make_shared<Sector>("s", from, to, radius);
}

std::shared_ptr<Zone> polygon(const std::vector<Point>& vertices) {
  return std::make_shared<Polygon>("p", vertices);
}

TEST(Tables, LeaveNoMoreOpenThanTheyDid) {
  const std::vector<Point> corners{{0.0, 0.0}, {10.0, 6.0}};
  EXPECT_EQ(decidedBy({std::make_shared<Rectangle>("r", corners, 0.3)}),
            (Decided{135483, 1499, 4, 0, 0, 16, 5}));
  EXPECT_EQ(decidedBy({std::make_shared<Rectangle>("r", corners, 0.0)}),
            (Decided{135306, 1490, 4, 0, 0, 16, 5}));
  EXPECT_EQ(decidedBy({sector(-0.4, 1.1, 5.0)}), (Decided{134886, 1468, 5, 0, 0, 15, 4}));
  EXPECT_EQ(decidedBy({sector(1.0, -1.0, 5.0)}), (Decided{134806, 1688, 6, 0, 0, 16, 4}));
  EXPECT_EQ(decidedBy({sector(0.7, 0.7, 5.0)}), (Decided{135436, 1464, 0, 0, 0, 0, 1}));
  EXPECT_EQ(decidedBy({polygon({{0.0, 0.0}, {4.0, 9.0}, {9.0, 1.0}}),
                       polygon({{1.0, 8.0}, {9.0, 7.0}, {3.0, -1.0}})}),
            (Decided{133882, 2638, 19, 0, 0, 46, 7}));
  // Four zones that meet in a vertex, and one that crosses itself.
  EXPECT_EQ(decidedBy({polygon({{0.0, 0.0}, {4.0, 1.0}, {1.0, 4.0}}),
                       polygon({{0.0, 0.0}, {-4.0, 1.0}, {-1.0, 4.0}}),
                       polygon({{0.0, 0.0}, {-3.0, -1.0}, {-1.0, -4.0}}), sector(0.1, 1.4, 3.0),
                       polygon({{-3.0, -3.0}, {3.0, 2.0}, {3.0, -3.0}, {-3.0, 2.0}})}),
            (Decided{132871, 3971, 58, 16, 4, 136, 17}));
}

std::uint64_t alwaysAsked(const std::shared_ptr<Zone>& shape) {
  ZoneDetector detector;
  add(detector, 0, shape);
  return ZoneIndex(detector).grid().alwaysAsked;
}

// Where coordinates are large, rounding is coarser than the margins: the tables decide nothing.
TEST(Tables, ShapesThatReachTooFarAreAskedForEveryPoint) {
  constexpr double far = 1.0000001e7;
  const auto sectorAt = [](double x, double y) {
    return std::make_shared<Sector>("s", 0.0, 1.0, 3.0, Point(x, y));
  };
  EXPECT_EQ(alwaysAsked(sectorAt(2.0, 3.0)), 0U);
  EXPECT_EQ(alwaysAsked(sectorAt(far, 3.0)), 1U);
  EXPECT_EQ(alwaysAsked(sectorAt(2.0, -far)), 1U);
  EXPECT_EQ(alwaysAsked(sector(0.0, 1.0, far)), 1U);
  EXPECT_EQ(alwaysAsked(sector(std::numeric_limits<double>::infinity(), 1.0, 3.0)), 1U);
  EXPECT_EQ(alwaysAsked(sector(0.0, std::numeric_limits<double>::quiet_NaN(), 3.0)), 1U);
  EXPECT_EQ(alwaysAsked(polygon({{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}})), 0U);
  EXPECT_EQ(alwaysAsked(polygon({{0.0, 0.0}, {far, 0.0}, {1.0, 1.0}})), 1U);
  EXPECT_EQ(alwaysAsked(polygon({{0.0, 0.0}, {1.0, far}, {1.0, 1.0}})), 1U);
  EXPECT_EQ(alwaysAsked(polygon(std::vector<Point>(4096, Point(1.0, 1.0)))), 0U);
  EXPECT_EQ(alwaysAsked(polygon(std::vector<Point>(4097, Point(1.0, 1.0)))), 1U);
}

TEST(Tables, SizeIsThatOfThePlanAndTheHeights) {
  ZoneDetector detector;
  add(detector, 0, sector(0.0, 1.0, 3.0));
  const ZoneIndex index(detector);
  const Grid& grid = index.grid();
  const Heights heights = heightsOf(filter::classify::freeze(detector));
  const auto size = [](const auto& values) { return values.size() * sizeof(values[0]); };
  EXPECT_EQ(index.bytes(), size(grid.codes) + size(grid.palette) + size(grid.cutCells) +
                               size(grid.crossedCells) + size(grid.tangledCells) + size(grid.decisions) +
                               size(grid.curves) + size(heights.slabs) + size(heights.masks) +
                               size(heights.slabStarts) + size(heights.slabMasks));
}

Heights heightsOfZones(const std::vector<std::pair<double, double>>& bounds) {
  ZoneDetector detector;
  for (std::size_t i = 0; i < bounds.size(); ++i) {
    add(detector, static_cast<int>(i), sector(0.0, 1.0, 1.0), bounds[i].first, bounds[i].second);
  }
  return filter::classify::heightsOf(filter::classify::freeze(detector));
}

// A point in a bucket in which a slab starts is looked at by itself.
std::ptrdiff_t numOpen(const Heights& heights) {
  return std::count_if(heights.slabs.begin(), heights.slabs.end() - 2,
                       [](std::uint8_t slab) { return slab >= Heights::openBucket; });
}

double bucketSize(const Heights& heights) {
  return 1.0 / static_cast<double>(heights.buckets.stepsPerUnit);
}

TEST(Tables, OfHeightsHaveAnOpenBucketForEachBound) {
  EXPECT_EQ(numOpen(heightsOfZones({})), 0);
  EXPECT_EQ(numOpen(heightsOfZones({{0.0, 2.0}})), 2);
  EXPECT_EQ(numOpen(heightsOfZones({{0.0, 2.0}, {-1.0, 1.0}, {0.5, 3.0}})), 6);
  EXPECT_EQ(numOpen(heightsOfZones({{0.0, 2.0}, {0.01, 2.01}})), 4);
  EXPECT_EQ(numOpen(heightsOfZones({{0.0, 2.0}, {0.0, 2.0}})), 2);
  EXPECT_NEAR(bucketSize(heightsOfZones({{0.0, 2.0}})), 0.0005, 0.00001);
}

// Otherwise all heights where zones begin and end would share a bucket, and every point's would be searched
// for.
TEST(Tables, OfHeightsAreNotStretchedByBoundsThatStandForNone) {
  for (const double none : {10.0, 1.0e2, 1.0e3, 1.0e9, 1.0e300}) {
    EXPECT_LT(bucketSize(heightsOfZones({{0.0, 2.0}, {0.5, none}})), 0.005) << none;
    EXPECT_LT(bucketSize(heightsOfZones({{0.0, 2.0}, {-none, 1.0}})), 0.005) << none;
    EXPECT_LT(bucketSize(heightsOfZones({{-none, 2.0}, {0.25, none}, {0.5, 1.0}})), 0.008) << none;
    EXPECT_LE(numOpen(heightsOfZones({{-none, 2.0}, {0.25, none}, {0.5, 1.0}})), 6) << none;
  }
  EXPECT_LT(bucketSize(heightsOfZones({{0.0, 2.0}, {0.25, 1.0e8}, {0.5, 1.0e9}, {1.0, 1.5}})), 0.005);
}

TEST(Tables, OfHeightsHaveAtMost4096BucketsAndTwo) {
  for (const double step : {1.0e-6, 1.0e-3, 1.0, 1.0e3, 1.0e6}) {
    std::vector<std::pair<double, double>> bounds;
    for (int i = 0; i < 24; ++i) {
      bounds.emplace_back(step * i * i, step * (i * i + 7.5));
      EXPECT_LE(heightsOfZones(bounds).slabs.size(), 4098U) << step << ", " << i;
    }
  }
}

// A gap of 1e30 m beside one of a metre: what is left without the wide gap is a metre, whatever rounding
// says.
TEST(Tables, OfHeightsHaveAsManyBucketsWhateverTheGaps) {
  std::mt19937_64 random(20261122);
  for (int round = 0; round < 20000; ++round) {
    std::vector<std::pair<double, double>> bounds(1 + random() % 5);
    const auto height = [&random]() {
      const double magnitude = std::exp2(static_cast<double>(random() % 220) - 110.0);
      return (random() % 2 == 0 ? -1.0 : 1.0) * magnitude * static_cast<double>(random() % 4);
    };
    std::ostringstream text;
    for (auto& [low, high] : bounds) {
      low = height();
      high = height();
      text << low << ' ' << high << ", ";
    }
    EXPECT_LE(heightsOfZones(bounds).slabs.size(), 4098U) << text.str();
  }
}

// A larger height has no smaller bucket, and those after the last one are for what is not an ordinary number.
TEST(Tables, OfHeightsKeepTheOrderOfHeights) {
  const Heights heights = heightsOfZones({{-1000.0, 2.0}, {-1.0, 1.0}, {0.5, 3.0e8}});
  EXPECT_GT(heights.buckets.numPieces, 1U);
  int last = 0;
  for (const float sign : {-1.0F, 1.0F}) {
    for (int i = 0; i <= 4000; ++i) {
      const float magnitude = std::exp2(static_cast<float>(sign < 0.0F ? 2000 - i : i - 2000) / 16.0F);
      const int bucket = heights.buckets.number(sign * magnitude);
      EXPECT_GE(bucket, last) << sign * magnitude;
      last = bucket;
    }
  }
  EXPECT_EQ(last, heights.buckets.last());
  ASSERT_EQ(heights.slabs.size(), static_cast<std::size_t>(last) + 3);
  EXPECT_EQ(heights.slabs[heights.slabs.size() - 2], Heights::noSlab);
  EXPECT_EQ(heights.slabs.back(), Heights::openBucket);
  EXPECT_EQ(heights.masks[Heights::noSlab], 0U);
}

TEST(Tables, OfHeightsKnowBetweenWhichThereAreZones) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr float infinite = std::numeric_limits<float>::infinity();
  EXPECT_EQ(heightsOfZones({}).lowestInside, infinite);
  EXPECT_EQ(heightsOfZones({}).highestInside, -infinite);
  EXPECT_EQ(heightsOfZones({{0.5, 2.0}, {0.25, 1.0}}).lowestInside, 0.25F);
  EXPECT_EQ(heightsOfZones({{0.5, 2.0}, {0.25, 1.0}}).highestInside, 2.0F);
  EXPECT_EQ(heightsOfZones({{0.5, 2.0}, {0.25, infinity}}).highestInside, infinite);
  EXPECT_EQ(heightsOfZones({{0.5, 2.0}, {-infinity, 1.0}}).lowestInside, -infinite);
}

// Of points that are looked up many at a time, none below or above all zones is decided by itself afterwards.
TEST(Tables, NoPointOutsideOfAllHeightsIsLeftOpen) {
  ZoneDetector detector;
  add(detector, 0, polygon({{0.0, 0.0}, {4.0, 9.0}, {9.0, 1.0}}), 0.5, 2.0);
  const ZoneIndex index(detector);
  const Heights heights = heightsOf(filter::classify::freeze(detector));
  const auto cutPoints = [&](const std::vector<float>& z) {
    const std::vector<float> x(z.size(), 0.0F);
    const std::vector<float> y(z.size(), 0.0F);
    std::vector<std::uint64_t> masks(z.size());
    filter::classify::Pending pending;
    const filter::classify::Block<float> block{
        filter::classify::PointsView<float>::separate(x.data(), y.data(), z.data(), z.size()),
        filter::classify::Layout::Arrays, masks.data()};
    filter::classify::lookUp(index.grid(), heights, block, filter::classify::Purpose::Masks, pending);
    return pending.cell.size;
  };
  EXPECT_EQ(cutPoints(std::vector<float>(64, 1.0F)), 64U);
  EXPECT_EQ(cutPoints(std::vector<float>(64, 0.25F)), 0U);
  EXPECT_EQ(cutPoints(std::vector<float>(64, 2.25F)), 0U);
  std::vector<float> mixed(64, 0.25F);
  mixed[5] = mixed[63] = 0.5F;
  mixed[7] = 2.0F;
  EXPECT_EQ(cutPoints(mixed), 3U);
}

}  // namespace
}  // namespace orvantis::testing
