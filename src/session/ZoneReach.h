#pragma once

#include <cstdint>
#include <optional>

#include <filter/detection/Zone3dBase.h>

#include "session/Coordinates.h"

namespace orvantis::toolkit {

/// The point of a frame that comes nearest to a zone's outline on the plan.
struct NearestPoint {
  Coordinates at{};
  double distance = 0.0;  ///< from the outline, on the plan
};

/// The points of a frame that a zone nearly holds: those inside its outline but outside its heights or, when
/// no point is inside its outline, the nearest point.
struct ZoneReach {
  std::uint64_t between = 0;  ///< inside the outline and the heights; exclusion zones are ignored
  std::uint64_t below = 0;    ///< inside the outline, below zMin
  std::uint64_t above = 0;    ///< inside the outline, above zMax
  /// The lowest and the highest of the points below or above.
  std::optional<double> lowest;
  std::optional<double> highest;
  std::optional<NearestPoint> nearest;  ///< only when no point is inside the outline

  std::uint64_t insideOutline() const { return between + below + above; }
};

/// Points that are not finite are skipped. A zone without a shape has no points. The distance from a sector's
/// arc is that from its drawn outline, which is up to 0.04 % of the radius off.
ZoneReach reachOf(const filter::detection::Zone3dBase& zone, const Points& points);

}  // namespace orvantis::toolkit
