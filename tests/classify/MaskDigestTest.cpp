#include <cstdint>
#include <ios>
#include <vector>

#include <gtest/gtest.h>
#include <hwy/highway.h>

#include "classify/BorderlineSites.h"
#include "classify/MaskDigest.h"
#include "classify/OnlyTarget.h"
#include "classify/Reference.h"
#include "classify/ZoneIndex.h"

namespace orvantis::testing {
namespace {

using filter::classify::ZoneIndex;
using filter::detection::ZoneDetector;

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
