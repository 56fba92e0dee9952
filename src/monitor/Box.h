#pragma once

#include <optional>

#include <core/Planar.h>
#include <core/State.h>

namespace orvantis::filter::monitor {

/// An oriented box: up to rounding, its corners are the centre plus or minus each of the two halves.
struct Box {
  core::PlanarPoint centre;
  core::PlanarPoint halfLength;
  core::PlanarPoint halfWidth;
  double largest;  ///< the largest coordinate of the corners, without sign
};

/// Nothing for a footprint that was not built as a box.
/// @param footprint of finite coordinates
std::optional<Box> boxOf(const core::State& footprint);

/// The axis-parallel box around a ring.
/// @param ring of finite coordinates, with at least one vertex
Box boxAround(const core::PlanarPolygon::ring_type& ring);

/// The larger of the two coordinates without their signs.
double largestOf(const core::PlanarPoint& point);

}  // namespace orvantis::filter::monitor
