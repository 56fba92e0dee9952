#pragma once

#include <cstdint>
#include <optional>

#include <filter/detection/Zone3dBase.h>

#include "session/Coordinates.h"

namespace orvantis::toolkit {

/// The point of a frame that comes nearest to a zone's outline on the plan.
struct NearestPoint {
  Coordinates at{};
  double distance = 0.0;  ///< on the plan
};

/// What of a frame a zone does not hold, but nearly: the points inside its outline and outside its heights,
/// or, when its outline holds none at all, the nearest one.
struct ZoneReach {
  std::uint64_t between = 0;  ///< inside the outline and the heights; exclusion zones play no part
  std::uint64_t below = 0;    ///< inside the outline, below zMin
  std::uint64_t above = 0;    ///< inside the outline, above zMax
  /// Of those below or above.
  std::optional<double> lowest;
  std::optional<double> highest;
  std::optional<NearestPoint> nearest;  ///< only when no point is inside the outline

  std::uint64_t insideOutline() const { return between + below + above; }
};

/// Points that are not finite are passed over. A zone without a shape reaches nothing. Of a sector's arc the
/// distance is that to its drawn outline, which is up to 0.04 % of the radius off.
ZoneReach reachOf(const filter::detection::Zone3dBase& zone, const Points& points);

}  // namespace orvantis::toolkit
