#pragma once

#include <core/Planar.h>

/// The questions about polygons, for zones and counter lines alike.
///
/// A ring is the closed curve through its vertices and stands for the region it bounds: its winding does not
/// matter, nor whether its first vertex is repeated at the end. A ring of fewer than 3 vertices, the repeated
/// one not counted, or with a coordinate that is not finite bounds no region: it shares no point with
/// anything.
///
/// A spike is a place where the ring runs back over itself. It belongs to the border of the polygon and
/// encloses nothing. The same holds for a ring of spikes only, such as the footprint of an object without
/// width: it meets what it lies across, but it has no interior, so it is within nothing, contains nothing and
/// overlaps nothing.
///
/// The relations never throw anything but std::bad_alloc. For a ring that touches or crosses itself in
/// another way, and when products of two coordinates overflow, their answer is not specified.
namespace orvantis::planar {

using core::PlanarPoint;
using core::PlanarPolygon;

/// Whether the point is strictly inside the outer ring and neither in nor on a hole. Allocates nothing.
bool contains(const PlanarPolygon& polygon, const PlanarPoint& point);

/// Whether `inner`, its border included, has no part outside `outer`, and their interiors meet.
bool within(const PlanarPolygon& inner, const PlanarPolygon& outer);
/// Whether the two share any point.
bool intersects(const PlanarPolygon& a, const PlanarPolygon& b);
/// Whether the interiors meet and each has a part outside the other.
bool overlaps(const PlanarPolygon& a, const PlanarPolygon& b);

/// Whether the segment shares any point with the polygon; one with a coordinate that is not finite does not.
bool segmentIntersects(const PlanarPoint& first, const PlanarPoint& second, const PlanarPolygon& polygon);

/// The signed areas of all rings added up, clockwise positive.
double signedArea(const PlanarPolygon& polygon);

}  // namespace orvantis::planar
