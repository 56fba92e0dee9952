#pragma once

#include <core/Planar.h>
#include <filter/detection/Sector.h>

namespace orvantis::filter::monitor {

/// The angles and the radius that a sector stores.
struct SectorLimits {
  double minAngle;
  double maxAngle;
  double radius;
};

SectorLimits limitsOf(const detection::Sector& sector);

/// Whether the region that the footprint's outer ring bounds and the sector share a point: a vertex is within
/// the sector, an edge runs through it, or it lies inside the ring. Vertices are judged by Sector::within;
/// what an edge merely grazes between them may be decided either way by rounding. Holes are not looked at.
///
/// The sector's own `within` and `intersects` look at vertices only, so an object that lies across a sector
/// without a corner in it would not be seen.
bool shareAnyPoint(const detection::Sector& sector, const core::PlanarPolygon& footprint);

}  // namespace orvantis::filter::monitor
