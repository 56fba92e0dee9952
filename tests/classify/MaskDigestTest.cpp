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

std::vector<std::uint64_t> masksOfZones(const ZoneDetector& detector,
                                        const std::vector<BorderlineSites::Point>& points) {
  std::vector<std::uint64_t> masks;
  for (const BorderlineSites::Point& point : points) {
    masks.push_back(maskByZones(detector, point.x, point.y, point.z));
  }
  return masks;
}

TEST(MaskDigest, IsThatOfEveryMachineForZonesAndForEveryKindOfInstructions) {
  const std::vector<std::int64_t> targets = everyTarget();
  BorderlineSites sites(90);
  Digest ofZones;
  std::vector<Digest> ofTargets(targets.size());
  for (std::size_t i = 0; i < numSites; ++i) {
    const ZoneDetector detector = sites.site();
    const ZoneIndex index(detector);
    const std::vector<BorderlineSites::Point> floats = sites.points(pointsPerSite, true);
    const std::vector<BorderlineSites::Point> doubles = sites.points(pointsPerSite, false);
    ofZones.add(masksOfZones(detector, floats));
    ofZones.add(masksOfZones(detector, doubles));
    for (std::size_t k = 0; k < targets.size(); ++k) {
      const OnlyTarget only(targets[k]);
      ofTargets[k].add(masksOf<float>(index, floats));
      ofTargets[k].add(masksOf<double>(index, doubles));
    }
  }
  EXPECT_EQ(ofZones.value(), expectedDigest) << "zones: the new digest is 0x" << std::hex << ofZones.value();
  for (std::size_t k = 0; k < targets.size(); ++k) {
    EXPECT_EQ(ofTargets[k].value(), expectedDigest)
        << hwy::TargetName(targets[k]) << ": the new digest is 0x" << std::hex << ofTargets[k].value();
  }
}

}  // namespace
}  // namespace orvantis::testing
