#pragma once

#include <vector>

#include <core/Planar.h>

namespace orvantis::filter::monitor {

/// Whether a point lies inside a ring: a ray from it crosses the ring an odd number of times. Exact, except
/// for points on the ring itself, which may get either answer.
/// @param ring of finite coordinates, the first vertex repeated at the end or not
bool isInside(const std::vector<core::PlanarPoint>& ring, const core::PlanarPoint& point);

}  // namespace orvantis::filter::monitor
