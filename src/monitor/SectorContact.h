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
/// the sector, an edge runs through it, or the sector lies inside the ring. Sector::within decides for the
/// vertices; when an edge only touches the sector between them, rounding may decide either way. Holes are not
/// checked.
///
/// The sector's own `within` and `intersects` check only vertices, so they miss an object that lies across
/// the sector without a corner in it.
bool shareAnyPoint(const detection::Sector& sector, const core::PlanarPolygon& footprint);

}  // namespace orvantis::filter::monitor
