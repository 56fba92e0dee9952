#pragma once

#include <core/Planar.h>

namespace orvantis::filter::monitor {

/// An axis-parallel box, borders included.
struct Bounds {
  core::PlanarPoint low;
  core::PlanarPoint high;
};

/// Some box or other when a coordinate is not finite.
/// @param ring with at least one vertex
Bounds boundsOf(const core::PlanarPolygon::ring_type& ring);

/// Whether the two share no point.
bool areApart(const Bounds& a, const Bounds& b);

}  // namespace orvantis::filter::monitor
