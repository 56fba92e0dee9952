#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "document/FieldZones.h"
#include "session/Coordinates.h"

namespace orvantis::toolkit {

/// Notes whether there are points between the heights of each zone. If there are none, the points are
/// probably in another frame of reference than the zones, which would look like an empty scene.
class HeightWatch {
 public:
  struct ZoneHeights {
    FieldZone zone;
    bool isSeen = false;  ///< whether any finite point was between its heights
    // How many points inside the outline there are among a few thousand evenly chosen points of each frame.
    std::uint64_t inside = 0;
    std::uint64_t between = 0;                                ///< those of them that are between the heights
    double lowest = std::numeric_limits<double>::infinity();  ///< of those that are not between the heights
    double highest = -std::numeric_limits<double>::infinity();

    /// Whether less than 1 % of the points inside the outline are between the heights.
    bool isNearlyUnseen() const { return isSeen && inside > 100 * between; }
  };

  explicit HeightWatch(const std::vector<FieldZone>& zones);

  void add(const Points& points);

  /// In the order of the zones.
  const std::vector<ZoneHeights>& zones() const { return zones_; }

 private:
  std::vector<ZoneHeights> zones_;
};

}  // namespace orvantis::toolkit
