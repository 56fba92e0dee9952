#pragma once

#include <core/Planar.h>
#include <filter/detection/Polygon.h>

namespace orvantis::filter::monitor {

/// The vertices of a polygon zone as they are stored.
core::PlanarPolygon::ring_type ringOf(const detection::Polygon& polygon);

}  // namespace orvantis::filter::monitor
