#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "document/FieldZones.h"
#include "session/Coordinates.h"

namespace orvantis::toolkit {

/// Notes whether there are points between the heights of each zone: points in one frame of reference and
/// zones in another look like an empty scene.
class HeightWatch {
 public:
  struct ZoneHeights {
    FieldZone zone;
    bool isSeen = false;  ///< whether any finite point at all was between its heights
    // Of some thousand points of each frame, evenly taken, those inside the outline.
    std::uint64_t inside = 0;
    std::uint64_t between = 0;                                ///< and the heights
    double lowest = std::numeric_limits<double>::infinity();  ///< of those outside the heights
    double highest = -std::numeric_limits<double>::infinity();

    /// Under 1 % of the points inside the outline are between the heights.
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
