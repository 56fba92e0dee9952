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

/// How far apart two points are: the same number on every machine. No intermediate value overflows or
/// underflows. The result is not finite when a coordinate is not.
double distance(const core::PlanarPoint& a, const core::PlanarPoint& b);

}  // namespace orvantis::filter::monitor
