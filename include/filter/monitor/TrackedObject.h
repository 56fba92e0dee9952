#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <core/Planar.h>
#include <core/State.h>
#include <orvantis/Api.h>

namespace orvantis::filter::monitor {

/// One object of a frame, as a tracker reports it. Coordinates and heights are in the frame and unit of the
/// zones and lines.
struct TrackedObject {
  std::int32_t id = -1;  ///< of the track; below zero: no identity
  core::State footprint;
  double zMin = 0.0;
  double zMax = 0.0;
  std::string className;  ///< empty: not classified
};

/// The one point that stands for an object: for a box, exactly the centre that it was built from; for any
/// other footprint, the centroid of the region that its outer ring bounds.
///
/// @return nothing for a footprint that cannot be placed: one without vertices, or with a coordinate that is
///   not finite. Such an object counts as not seen: it is in no zone and crosses no line. Throws nothing.
ORVANTIS_API std::optional<core::PlanarPoint> referencePoint(const core::State& footprint);

/// The same for a footprint of which only the outline is known: the centroid of the region that its outer
/// ring bounds. A ring that bounds no area, such as the four equal corners of a box without extent, has the
/// middle of its bounding box instead. The point never lies outside the bounding box. Throws nothing.
ORVANTIS_API std::optional<core::PlanarPoint> referencePoint(const core::PlanarPolygon& footprint);

}  // namespace orvantis::filter::monitor
