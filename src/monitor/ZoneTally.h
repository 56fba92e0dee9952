#pragma once

#include <array>
#include <cstdint>

#include <filter/classify/PointClassifier.h>
#include <filter/classify/Points.h>
#include <filter/detection/ZoneDetector.h>
#include <filter/monitor/ZoneSlot.h>

namespace orvantis::filter::monitor {

/// Zones, each by its bit in the masks of the classifier: those that the points of a sensor count for.
using ZoneBits = std::uint64_t;
constexpr ZoneBits allZones = ~ZoneBits{0};

/// Where the points inside a zone go.
struct ZoneTally {
  std::uint64_t counted = 0;  ///< outside every exclusion zone
  std::uint64_t taken = 0;
  /// By number of the exclusion zone; a point inside several stands at each.
  std::array<std::uint64_t, detection::ZoneDetector::MAX_NUM_EXCLUSION_ZONES> takenBy{};
};
using ZoneTallies = std::array<ZoneTally, NUM_ZONE_SLOTS>;

/// The counts of the points, for these zones alone: for the others they are not there.
classify::ZoneCounts count(const classify::PointClassifier& classifier, const classify::Points& points,
                           ZoneBits zones);

/// The same in detail, added to the tallies.
void tally(const classify::PointClassifier& classifier, const classify::Points& points, ZoneBits zones,
           ZoneTallies& tallies);

}  // namespace orvantis::filter::monitor
