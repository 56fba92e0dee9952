#pragma once

#include <core/Planar.h>

namespace orvantis::filter::monitor {

/// An axis-parallel box. Its borders belong to it.
struct Bounds {
  core::PlanarPoint low;
  core::PlanarPoint high;
};

/// The bounding box of a ring. When a coordinate is not finite, the box has no meaning.
/// @param ring with at least one vertex
Bounds boundsOf(const core::PlanarPolygon::ring_type& ring);

/// Whether the two share no point.
bool areApart(const Bounds& a, const Bounds& b);

}  // namespace orvantis::filter::monitor
