#include <cmath>
#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/ZoneDetector.h>
#include <settings/SettingsManager.h>

#include "classify/Reference.h"
#include "support/AllocationCounter.h"

namespace orvantis::testing {
namespace {

using filter::classify::PointClassifier;
using filter::classify::PointsView;
using filter::classify::ZoneCounts;
using namespace filter::detection;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

std::shared_ptr<Zone3dBase> square(const std::string& name, double centreX, double centreY, double half) {
  const std::vector<Point> corners{{centreX - half, centreY - half}, {centreX + half, centreY + half}};
  return std::make_shared<Zone3dBase>(std::make_shared<Rectangle>(name, corners, 0.0), 0.0, 2.0);
}

std::uint64_t bit(int number) {
  return std::uint64_t{1} << number;
}

std::uint64_t maskOf(const PointClassifier& classifier, double x, double y, double z) {
  std::uint64_t mask = ~std::uint64_t{0};
  classifier.classify(PointsView<double>::separate(&x, &y, &z, 1), &mask);
  return mask;
}

TEST(PointClassifier, FieldZoneHasTheBitOfItsPlaceAndExclusionZoneTheBitAfterThem) {
  ZoneDetector detector;
  detector.setZone(square("last", 0.0, 0.0, 1.0), 7, 2);
  detector.setZone(square("first", 0.0, 0.0, 2.0), 0, 0);
  detector.appendExclusionZone(square("a", 0.0, 0.0, 3.0));
  detector.appendExclusionZone(square("b", 0.0, 0.0, 4.0));
  const PointClassifier classifier(detector);
  EXPECT_EQ(maskOf(classifier, 0.5, 0.5, 1.0), bit(0) | bit(23) | bit(24) | bit(25));
  EXPECT_EQ(maskOf(classifier, 1.5, 0.5, 1.0), bit(0) | bit(24) | bit(25));
  EXPECT_EQ(maskOf(classifier, 3.5, 0.5, 1.0), bit(25));
  EXPECT_EQ(maskOf(classifier, 4.5, 0.5, 1.0), 0U);
}

template <typename Real>
void expectMasksAndCounts(const PointClassifier& classifier) {
  const std::vector<Real> x = {Real{0.5}, Real{1.5}, Real{2.5}};
  const std::vector<Real> rest = {Real{0.25}, Real{0.25}, Real{0.25}};
  const auto points = PointsView<Real>::separate(x.data(), rest.data(), rest.data(), x.size());
  const std::vector<std::uint64_t> expected = {bit(0) | bit(24), bit(0), 0};
  std::vector<std::uint64_t> masks(3, ~std::uint64_t{0});
  classifier.classify(points, masks.data());
  EXPECT_EQ(masks, expected);
  masks.assign(3, ~std::uint64_t{0});
  EXPECT_EQ(classifier.count(points, masks.data()).inside[0], 1U);
  EXPECT_EQ(masks, expected);
  EXPECT_EQ(classifier.count(points, nullptr).excluded, 1U);
}

TEST(PointClassifier, FloatsAndDoublesGetTheSameMasksAndCounts) {
  ZoneDetector detector;
  detector.setZone(square("zone", 0.0, 0.0, 2.0), 0, 0);
  detector.appendExclusionZone(square("exclusion", 0.0, 0.0, 1.0));
  const PointClassifier classifier(detector);
  expectMasksAndCounts<float>(classifier);
  expectMasksAndCounts<double>(classifier);
}

TEST(PointClassifier, BordersOfThePlanAreOutsideAndHeightsAtTheBoundsInside) {
  ZoneDetector detector;
  detector.setZone(square("z", 0.0, 0.0, 1.0), 0, 0);
  const PointClassifier classifier(detector);
  EXPECT_EQ(maskOf(classifier, 1.0, 0.0, 1.0), 0U);
  EXPECT_EQ(maskOf(classifier, std::nextafter(1.0, 0.0), 0.0, 1.0), 0U);  // as near as counts as equal
  EXPECT_EQ(maskOf(classifier, 1.0 - 1.0e-15, 0.0, 1.0), bit(0));
  EXPECT_EQ(maskOf(classifier, 0.0, 0.0, 0.0), bit(0));
  EXPECT_EQ(maskOf(classifier, 0.0, 0.0, -0.0), bit(0));
  EXPECT_EQ(maskOf(classifier, 0.0, 0.0, 2.0), bit(0));
  EXPECT_EQ(maskOf(classifier, 0.0, 0.0, std::nextafter(2.0, 3.0)), 0U);
  EXPECT_EQ(maskOf(classifier, 0.0, 0.0, -std::numeric_limits<double>::denorm_min()), 0U);
}

TEST(PointClassifier, HeightsFarBelowAndAboveAllZonesAreOutsideOfThem) {
  ZoneDetector detector;
  detector.setZone(square("z", 0.0, 0.0, 1.0), 0, 0);
  const PointClassifier classifier(detector);
  std::vector<float> z;
  for (float height = 3.0F; std::isfinite(height); height *= 1.25F) {
    z.insert(z.end(), {height, -height});
  }
  const std::vector<float> zero(z.size(), 0.0F);
  std::vector<std::uint64_t> masks(z.size(), ~std::uint64_t{0});
  classifier.classify(PointsView<float>::separate(zero.data(), zero.data(), z.data(), z.size()),
                      masks.data());
  for (std::size_t i = 0; i < z.size(); ++i) {
    EXPECT_EQ(masks[i], 0U) << z[i];
    EXPECT_EQ(maskOf(classifier, 0.0, 0.0, static_cast<double>(z[i])), 0U) << z[i];
  }
}

// Runs of points at one height, across the border of a zone: without any other point, and with one that is
// inside.
template <typename Real>
void expectVerdictsAbout(double bound, const ZoneDetector& detector) {
  const PointClassifier classifier(detector);
  for (int step = -3; step <= 3; ++step) {
    auto height = static_cast<Real>(bound);
    for (int i = 0; i < std::abs(step); ++i) {
      height = std::nextafter(height, static_cast<Real>(step * infinity));
    }
    for (const bool hasOther : {false, true}) {
      std::vector<Real> x(64);
      for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<Real>(0.9 + 0.003 * static_cast<double>(i));
      }
      const std::vector<Real> y(x.size(), Real{0.25});
      std::vector<Real> z(x.size(), height);
      for (std::size_t i = 0; hasOther && i < z.size(); i += 4) {
        z[i] = Real{1};
      }
      std::vector<std::uint64_t> masks(x.size(), ~std::uint64_t{0});
      classifier.classify(PointsView<Real>::separate(x.data(), y.data(), z.data(), x.size()), masks.data());
      for (std::size_t i = 0; i < x.size(); ++i) {
        EXPECT_EQ(masks[i], maskByZones(detector, static_cast<double>(x[i]), 0.25, static_cast<double>(z[i])))
            << "x " << x[i] << ", z " << z[i] << ", bound " << bound << ", step " << step;
      }
    }
  }
}

TEST(PointClassifier, RunsOfPointsAboutTheLowestAndTheHighestBoundHaveTheZonesVerdicts) {
  // Decimals, some of which a float is above and some below.
  for (const double low : {0.1, 0.7, -0.1, -0.7, 0.0, -infinity}) {
    for (const double high : {2.3, 2.7, 1.0, infinity}) {
      ZoneDetector detector;
      const auto zone = square("z", 0.0, 0.0, 1.0);
      zone->setZMin(low);
      zone->setZMax(high);
      detector.setZone(zone, 0, 0);
      for (const double bound : {low, high}) {
        expectVerdictsAbout<float>(bound, detector);
        expectVerdictsAbout<double>(bound, detector);
      }
    }
  }
}

TEST(PointClassifier, PointsFarFromAllZonesInThePlanAreOutsideOfThem) {
  ZoneDetector detector;
  detector.setZone(square("z", 0.5, 0.5, 0.5), 0, 0);
  const PointClassifier classifier(detector);
  std::vector<float> far;
  for (float distance = 2.0F; std::isfinite(distance); distance *= 1.25F) {
    far.insert(far.end(), {distance, -distance});
  }
  const std::vector<float> half(far.size(), 0.5F);
  std::vector<std::uint64_t> masks(far.size());
  for (const bool isAlongX : {false, true}) {
    const float* x = isAlongX ? far.data() : half.data();
    const float* y = isAlongX ? half.data() : far.data();
    masks.assign(far.size(), ~std::uint64_t{0});
    classifier.classify(PointsView<float>::separate(x, y, half.data(), far.size()), masks.data());
    for (std::size_t i = 0; i < far.size(); ++i) {
      EXPECT_EQ(masks[i], 0U) << x[i] << ", " << y[i];
    }
  }
}

// The last record may end with its z, where the memory ends too.
TEST(PointClassifier, ReadsNothingBehindTheLastPoint) {
  ZoneDetector detector;
  detector.setZone(square("z", 0.0, 0.0, 2.0), 0, 0);
  const PointClassifier classifier(detector);
  for (std::size_t size = 1; size <= 70; ++size) {
    for (const std::size_t numbers : {3U, 4U, 8U}) {
      std::vector<float> records(numbers * (size - 1) + 3, 1.0F);
      std::vector<std::uint64_t> expected(size, bit(0));
      for (std::size_t i = 0; i < size; i += 3) {
        records[numbers * i + i % 2] = 5.0F;
        expected[i] = 0;
      }
      std::vector<std::uint64_t> masks(size);
      classifier.classify(PointsView<float>::interleaved(records.data(), numbers * sizeof(float), size),
                          masks.data());
      EXPECT_EQ(masks, expected) << size << " records of " << numbers << " numbers";
    }
  }
}

// The determinant of such a point is too small to be told from zero, so the zone takes it for a border point.
// Such records are copied in another way when x, y and z follow one another.
TEST(PointClassifier, RecordsMayHoldOtherNumbersBetweenTheCoordinates) {
  ZoneDetector detector;
  detector.setZone(square("z", 4.0, -2.0, 1.0), 0, 0);
  const PointClassifier classifier(detector);
  constexpr std::size_t size = 40;
  constexpr std::size_t stride = 4 * sizeof(float);
  const auto inside = [&](std::size_t x, std::size_t y, std::size_t z) {
    std::vector<float> records(4 * size, 100.0F);
    for (std::size_t i = 0; i < size; ++i) {
      records[4 * i + x] = i % 3 == 0 ? 4.25F : 100.0F;
      records[4 * i + y] = -2.25F;
      records[4 * i + z] = 1.5F;
    }
    const float* first = records.data();
    return classifier.count(PointsView<float>{first + x, first + y, first + z, stride, size}, nullptr)
        .inside[0];
  };
  EXPECT_EQ(inside(0, 1, 2), 14U);
  EXPECT_EQ(inside(0, 1, 3), 14U);
  EXPECT_EQ(inside(0, 2, 3), 14U);
  EXPECT_EQ(inside(1, 2, 3), 14U);
  EXPECT_EQ(inside(3, 1, 2), 14U);
  EXPECT_EQ(inside(2, 1, 0), 14U);
}

TEST(PointClassifier, PointFarAboveAnAlmostUprightEdgeHasItsZonesVerdict) {
  const double width = 1.0e-15;
  const std::vector<Point> notched{{-10.0, -20.0}, {-10.0, 20.0}, {10.0, 20.0}, {10.0, -20.0},
                                   {1.0, -20.0},   {width, 0.0},  {0.0, -0.01}, {-1.0, -20.0}};
  ZoneDetector detector;
  detector.setZone(std::make_shared<Zone3dBase>(std::make_shared<Polygon>("n", notched), 0.0, 2.0), 0, 0);
  const PointClassifier classifier(detector);
  ASSERT_FALSE(detector.getZone(0, 0)->within(width / 2.0, 0.2, 1.0));
  ASSERT_TRUE(detector.getZone(0, 0)->within(0.01, 0.2, 1.0));
  for (int i = 1; i <= 100; ++i) {
    const double y = 0.01 * i;
    EXPECT_EQ(maskOf(classifier, width / 2.0, y, 1.0), maskByZones(detector, width / 2.0, y, 1.0)) << y;
  }
}

TEST(PointClassifier, MissingZonesAndZonesWithoutShapeHaveNoBit) {
  ZoneDetector detector;
  detector.setZone(std::make_shared<Zone3dBase>(), 1, 1);
  EXPECT_EQ(maskOf(PointClassifier(detector), 0.0, 0.0, 1.0), 0U);
  EXPECT_EQ(maskOf(PointClassifier(ZoneDetector()), nan, infinity, 1.0), 0U);
}

TEST(PointClassifier, MoreThan32ExclusionZonesAreRefused) {
  ZoneDetector detector;
  for (int k = 0; k < 32; ++k) {
    detector.appendExclusionZone(square("e" + std::to_string(k), 0.0, 0.0, 1.0));
  }
  EXPECT_EQ(maskOf(PointClassifier(detector), 0.0, 0.0, 1.0), std::uint64_t{0xFFFFFFFF} << 24U);

  // Loading a document does not look at the number.
  SettingsManager settings;
  std::string zones;
  for (int k = 0; k < 33; ++k) {
    zones += std::string(k == 0 ? "" : ",") + R"({"name":"e)" + std::to_string(k) +
             R"(","shape":"sector","Sector":{"minAngle":0,"maxAngle":1,"radius":1}})";
  }
  std::istringstream document(R"({"ZoneDetector":{"ExclusionZone":[)" + zones + "]}}");
  ASSERT_TRUE(settings.loadStream(document, SettingsManager::JSON));
  ZoneDetector crowded;
  crowded.load(settings);
  ASSERT_EQ(crowded.getExclusionZoneVector().size(), 33U);
  EXPECT_THROW(PointClassifier{crowded}, std::invalid_argument);
}

TEST(PointClassifier, LaterEditsOfTheZonesChangeNothing) {
  const auto sector = std::make_shared<Sector>("s", -1.0, 1.0, 10.0, Point(50.0, 0.0));
  const auto zone = std::make_shared<Zone3dBase>(sector, 0.0, 2.0);
  ZoneDetector detector;
  detector.setZone(zone, 0, 0);
  const PointClassifier classifier(detector);
  ASSERT_EQ(maskOf(classifier, 55.0, 0.0, 1.0), bit(0));
  sector->setOrigin(-100.0, 0.0);
  zone->setZMax(0.5);
  detector.setZone(square("other", -200.0, 0.0, 1.0), 0, 0);
  EXPECT_EQ(maskOf(classifier, 55.0, 0.0, 1.0), bit(0));
}

// A host's own shape: the disc of radius 1, but for its upper half.
class HalfDisc : public Zone {
 public:
  using Zone::Zone;
  std::shared_ptr<Zone> makeCopy() const override { return std::make_shared<HalfDisc>(name()); }
  bool within(const polygon&) const override { return false; }
  bool within(const Point& point) const override {
    return point.y() < 0.0 && point.x() * point.x() + point.y() * point.y() < 1.0;
  }
  bool intersects(const polygon&) const override { return false; }
  bool overlaps(const polygon&) const override { return false; }
  double area() const override { return 0.0; }
  void save(SettingsManager&) const override {}
  void load(SettingsManager&) override {}
  const std::string& type() const override { return name(); }
};

TEST(PointClassifier, AHostsOwnShapeIsAsked) {
  ZoneDetector detector;
  detector.setZone(std::make_shared<Zone3dBase>(std::make_shared<HalfDisc>("h"), 0.0, 2.0), 0, 0);
  detector.setZone(square("z", 0.0, 0.0, 1.0), 0, 1);
  const PointClassifier classifier(detector);
  EXPECT_EQ(maskOf(classifier, 0.1, -0.1, 1.0), bit(0) | bit(1));
  EXPECT_EQ(maskOf(classifier, 0.1, 0.1, 1.0), bit(1));
  EXPECT_EQ(maskOf(classifier, 0.1, -0.1, 3.0), 0U);
}

TEST(PointClassifier, CountsPointsPerZoneOutsideExclusionZonesAndThoseThatAreNotFinite) {
  ZoneDetector detector;
  detector.setZone(square("z", 0.0, 0.0, 2.0), 1, 0);
  detector.appendExclusionZone(square("e", 1.0, 1.0, 0.5));
  const PointClassifier classifier(detector);
  std::vector<double> x{0.0, 1.0, -1.0, 9.0, nan, 0.0};
  std::vector<double> y{0.0, 1.0, -1.0, 9.0, 0.0, infinity};
  std::vector<double> z(x.size(), 1.0);
  const auto view = PointsView<double>::separate(x.data(), y.data(), z.data(), x.size());
  std::vector<std::uint64_t> masks(x.size());
  for (std::uint64_t* out : {masks.data(), static_cast<std::uint64_t*>(nullptr)}) {
    const ZoneCounts counts = classifier.count(view, out);
    EXPECT_EQ(counts.inside[3], 2U);
    EXPECT_EQ(counts.excluded, 1U);
    EXPECT_EQ(counts.noReturns, 2U);
  }
  EXPECT_EQ(masks, (std::vector<std::uint64_t>{bit(3), bit(3) | bit(24), bit(3), 0, 0, 0}));
}

TEST(PointClassifier, CountsPointsThatAreNotFiniteAboveAllZonesToo) {
  ZoneDetector detector;
  detector.setZone(square("z", 0.0, 0.0, 1.0), 0, 0);
  std::vector<float> x(64, 0.5F);
  const std::vector<float> y(x.size(), 0.5F);
  const std::vector<float> z(x.size(), 100.0F);
  x[3] = static_cast<float>(nan);
  x[60] = static_cast<float>(infinity);
  const auto points = PointsView<float>::separate(x.data(), y.data(), z.data(), x.size());
  const ZoneCounts counts = PointClassifier(detector).count(points, nullptr);
  EXPECT_EQ(counts.noReturns, 2U);
  EXPECT_EQ(counts.inside[0], 0U);
}

TEST(PointClassifier, CountsOfManyPointsAreExact) {
  ZoneDetector detector;
  for (int i = 0; i < 24; ++i) {
    detector.setZone(square("z" + std::to_string(i), 0.0, 0.0, 1.0 + i), i / 3, i % 3);
  }
  const PointClassifier classifier(detector);
  constexpr std::size_t size = 100003;
  std::vector<float> x;
  for (std::size_t i = 0; i < size; ++i) {
    x.push_back(static_cast<float>(i % 24) + 0.5F);
  }
  const std::vector<float> zero(size, 0.25F);
  const ZoneCounts counts =
      classifier.count(PointsView<float>::separate(x.data(), zero.data(), zero.data(), size));
  for (std::size_t zone = 0; zone < 24; ++zone) {
    std::uint64_t expected = 0;
    for (std::size_t i = 0; i < size; ++i) {
      expected += i % 24 <= zone ? 1 : 0;
    }
    EXPECT_EQ(counts.inside[zone], expected) << zone;
  }
}

TEST(PointClassifier, AllocatesNothingAfterConstruction) {
  ZoneDetector detector;
  detector.setZone(square("z", 0.0, 0.0, 2.0), 0, 0);
  const PointClassifier classifier(detector);
  constexpr std::size_t size = 5000;
  std::vector<float> points(size * 4);
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i] = static_cast<float>(i % 41) * 0.1F;
  }
  std::vector<std::uint64_t> masks(size);
  const auto view = PointsView<float>::interleaved(points.data(), 16, size);
  classifier.classify(view, masks.data());
  const AllocationCounter allocations;
  classifier.classify(view, masks.data());
  classifier.count(view);
  EXPECT_EQ(allocations.count(), 0U);
}

// Such as the points of an empty std::vector: nothing may be added to that address.
TEST(PointClassifier, AnEmptyFrameNeedsNoAddress) {
  ZoneDetector detector;
  detector.setZone(square("z", 0.0, 0.0, 2.0), 0, 0);
  const PointClassifier classifier(detector);
  const auto view = PointsView<float>::interleaved(nullptr, 16, 0);
  EXPECT_EQ(view.y, nullptr);
  EXPECT_EQ(view.z, nullptr);
  classifier.classify(view, nullptr);
  EXPECT_EQ(classifier.count(view).inside[0], 0U);
}

TEST(PointClassifier, ThreadsMayShareIt) {
  ZoneDetector detector;
  detector.setZone(square("z", 0.0, 0.0, 2.0), 0, 0);
  const PointClassifier classifier(detector);
  constexpr std::size_t size = 20000;
  std::vector<double> x;
  for (std::size_t i = 0; i < size; ++i) {
    x.push_back(static_cast<double>(i) * 0.0005 - 5.0);
  }
  const std::vector<double> y(size, 0.3);
  std::vector<std::uint64_t> masks(size);
  const auto half = [&](std::size_t first) {
    classifier.classify(PointsView<double>::separate(x.data() + first, y.data(), y.data(), size / 2),
                        masks.data() + first);
  };
  std::thread other(half, size / 2);
  half(0);
  other.join();
  for (std::size_t i = 0; i < size; ++i) {
    ASSERT_EQ(masks[i], maskByZones(detector, x[i], 0.3, 0.3)) << i;
  }
}

}  // namespace
}  // namespace orvantis::testing
