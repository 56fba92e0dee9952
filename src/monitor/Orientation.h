#pragma once

#include <core/Planar.h>

namespace orvantis::filter::monitor {

/// The exact sign of the cross product of (b - a) and (c - a): 1 when c lies left of the line from a to b, -1
/// when it lies right of it, 0 when it lies on it or a and b are the same point.
///
/// Coordinates must be finite, and their products neither overflow nor underflow.
int orientation(const core::PlanarPoint& a, const core::PlanarPoint& b, const core::PlanarPoint& c);

/// The cross product whose sign `orientation` is, rounded: the area of the parallelogram.
double crossProduct(const core::PlanarPoint& a, const core::PlanarPoint& b, const core::PlanarPoint& c);

}  // namespace orvantis::filter::monitor
