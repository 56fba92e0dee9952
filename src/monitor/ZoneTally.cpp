#include "monitor/ZoneTally.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <variant>
#include <vector>

namespace orvantis::filter::monitor {
namespace {

using classify::PointClassifier;
using classify::Points;
using classify::PointsView;
using classify::ZoneCounts;

constexpr ZoneBits fieldZones = (ZoneBits{1} << NUM_ZONE_SLOTS) - 1;

// Whether the point is finite. Other points are not returns, even if a shape holds them: a whole disc holds a
// NaN.
template <typename Real>
bool isReturn(const PointsView<Real>& points, std::size_t point) {
  for (const void* const values : {points.x, points.y, points.z}) {
    Real value;
    std::memcpy(&value, static_cast<const unsigned char*>(values) + point * points.stride, sizeof(Real));
    if (!std::isfinite(value)) {
      return false;
    }
  }
  return true;
}

// Calls `take` with the mask of each point that is a return, reduced to the bits of these zones.
template <typename Take>
void forEachReturn(const PointClassifier& classifier, const Points& points, ZoneBits zones,
                   const Take& take) {
  std::visit(
      [&](const auto& view) {
        std::vector<std::uint64_t> masks(view.size);
        classifier.classify(view, masks.data());
        for (std::size_t i = 0; i < view.size; ++i) {
          if (isReturn(view, i)) {
            take(masks[i] & zones);
          }
        }
      },
      points);
}

}  // namespace

ZoneCounts count(const PointClassifier& classifier, const Points& points, ZoneBits zones) {
  ZoneCounts counts;
  if ((zones | fieldZones) == allZones) {
    // No exclusion zone is left out: the counts of the field zones are right as they are.
    counts = std::visit([&](const auto& view) { return classifier.count(view); }, points);
    for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
      counts.inside[slot] *= zones >> slot & 1U;
    }
    return counts;
  }
  counts.noReturns = classify::sizeOf(points);
  forEachReturn(classifier, points, zones, [&counts](ZoneBits mask) {
    --counts.noReturns;
    if (mask > fieldZones) {
      ++counts.excluded;
      return;
    }
    for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
      counts.inside[slot] += mask >> slot & 1U;
    }
  });
  return counts;
}

void tally(const PointClassifier& classifier, const Points& points, ZoneBits zones, ZoneTallies& tallies) {
  forEachReturn(classifier, points, zones, [&tallies](ZoneBits mask) {
    const ZoneBits exclusions = mask >> NUM_ZONE_SLOTS;
    for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
      if ((mask >> slot & 1U) == 0) {
        continue;
      }
      ZoneTally& zone = tallies[slot];
      ++(exclusions == 0 ? zone.counted : zone.taken);
      for (std::size_t k = 0; k < zone.takenBy.size(); ++k) {
        zone.takenBy[k] += exclusions >> k & 1U;
      }
    }
  });
}

}  // namespace orvantis::filter::monitor
