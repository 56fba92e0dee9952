#pragma once

#include <vector>

#include <filter/detection/CounterLine.h>
#include <filter/detection/Point.h>
#include <filter/detection/Zone.h>

namespace orvantis::app {

/// What a shape covers, for tables and pictures.

/// The vertices of a polygon or rectangle; for a sector its border as a ring with a vertex every few degrees.
std::vector<filter::detection::Point> outline(const filter::detection::Zone& shape);

/// The area in square units, positive: unlike `Zone::area`, the covered part of the disc for every sector and
/// without the sign of the winding.
double coveredArea(const filter::detection::Zone& shape);

/// The direction of a line from its first to its second point, of length 1; (0, 0) for a line without length.
filter::detection::Point directionOf(const filter::detection::CounterLine& line);

}  // namespace orvantis::app
