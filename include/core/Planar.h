#pragma once

#include <boost/geometry/core/cs.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>

/// @file
/// The planar types that zones, counter lines and tracked objects exchange. This header includes only the
/// models of Boost.Geometry: its algorithms would slow down every compilation.

namespace orvantis::core {

/// A point of the plan; coordinates in the frame and unit of the measured points.
using PlanarPoint = boost::geometry::model::d2::point_xy<double, boost::geometry::cs::cartesian>;

/// One outer ring and a list of inner rings (holes), declared clockwise and closed. This project reads either
/// winding, closed or not, as the region that the ring bounds.
using PlanarPolygon = boost::geometry::model::polygon<PlanarPoint, true, true>;

}  // namespace orvantis::core
