#pragma once

#include <array>
#include <cstdint>

#include <filter/classify/PointClassifier.h>
#include <filter/classify/Points.h>
#include <filter/detection/ZoneDetector.h>
#include <filter/monitor/ZoneSlot.h>

namespace orvantis::filter::monitor {

/// A set of zones, each as its bit in the masks of the classifier.
using ZoneBits = std::uint64_t;
constexpr ZoneBits allZones = ~ZoneBits{0};

/// How many points inside a zone count, and how many are taken by exclusion zones.
struct ZoneTally {
  std::uint64_t counted = 0;  ///< outside every exclusion zone
  std::uint64_t taken = 0;
  /// By number of the exclusion zone. A point inside several of them is counted for each.
  std::array<std::uint64_t, detection::ZoneDetector::MAX_NUM_EXCLUSION_ZONES> takenBy{};
};
using ZoneTallies = std::array<ZoneTally, NUM_ZONE_SLOTS>;

/// The counts of the points for these zones only: no point counts for the others.
classify::ZoneCounts count(const classify::PointClassifier& classifier, const classify::Points& points,
                           ZoneBits zones);

/// The same in detail, added to the tallies.
void tally(const classify::PointClassifier& classifier, const classify::Points& points, ZoneBits zones,
           ZoneTallies& tallies);

}  // namespace orvantis::filter::monitor
