#include <cstdint>
#include <ios>
#include <vector>

#include <gtest/gtest.h>
#include <hwy/highway.h>

#include "classify/BorderlineSites.h"
#include "classify/OnlyTarget.h"
#include "classify/Reference.h"
#include "classify/ZoneIndex.h"

namespace orvantis::testing {
namespace {

using filter::classify::PointsView;
using filter::classify::ZoneIndex;
using filter::detection::ZoneDetector;

// The masks of a million points on the borders of zones, as one number. Every machine, compiler and kind of
// processor instructions comes to this one; a change of it is a change of verdicts.
constexpr std::uint64_t expectedDigest = 0x0d15c81b990b4096;

constexpr std::size_t numSites = 125;
constexpr std::size_t pointsPerSite = 4000;  // in floats, and as many in doubles

class Digest {
 public:
  void add(const std::vector<std::uint64_t>& masks) {
    for (const std::uint64_t mask : masks) {
      value_ = (value_ ^ mask) * 0x9E3779B97F4A7C15U;
      value_ ^= value_ >> 32U;
    }
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0;
};

template <typename Real>
std::vector<std::uint64_t> masksOf(const ZoneIndex& index,
                                   const std::vector<BorderlineSites::Point>& points) {
  std::vector<Real> coordinates;
  for (const BorderlineSites::Point& point : points) {
    for (const double coordinate : {point.x, point.y, point.z}) {
      coordinates.push_back(static_cast<Real>(coordinate));
    }
  }
  std::vector<std::uint64_t> masks(points.size());
  index.classify(PointsView<Real>::interleaved(coordinates.data(), 3 * sizeof(Real), points.size()),
                 masks.data());
  return masks;
}

// Of the classifier.
std::uint64_t digestOfClassifier() {
  BorderlineSites sites(90);
  Digest digest;
  for (std::size_t i = 0; i < numSites; ++i) {
    const ZoneDetector detector = sites.site();
    const ZoneIndex index(detector);
    digest.add(masksOf<float>(index, sites.points(pointsPerSite, true)));
    digest.add(masksOf<double>(index, sites.points(pointsPerSite, false)));
  }
  return digest.value();
}

// And of each zone asked by itself.
std::uint64_t digestOfZones() {
  BorderlineSites sites(90);
  Digest digest;
  for (std::size_t i = 0; i < numSites; ++i) {
    const ZoneDetector detector = sites.site();
    for (const bool asFloat : {true, false}) {
      std::vector<std::uint64_t> masks;
      for (const BorderlineSites::Point& point : sites.points(pointsPerSite, asFloat)) {
        masks.push_back(maskByZones(detector, point.x, point.y, point.z));
      }
      digest.add(masks);
    }
  }
  return digest.value();
}

TEST(MaskDigest, OfZonesIsThatOfEveryMachine) {
  const std::uint64_t digest = digestOfZones();
  EXPECT_EQ(digest, expectedDigest) << "the new digest is 0x" << std::hex << digest;
}

TEST(MaskDigest, OfTheClassifierIsThatOfEveryMachineWithEveryKindOfInstructions) {
  for (const std::int64_t target : everyTarget()) {
    const OnlyTarget only(target);
    const std::uint64_t digest = digestOfClassifier();
    EXPECT_EQ(digest, expectedDigest)
        << hwy::TargetName(target) << ": the new digest is 0x" << std::hex << digest;
  }
}

}  // namespace
}  // namespace orvantis::testing
