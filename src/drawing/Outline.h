#pragma once

#include <vector>

#include <filter/detection/Point.h>
#include <filter/detection/Zone.h>

namespace orvantis::toolkit {

/// The vertices of a polygon or rectangle; for a sector its border as a ring with a vertex every few degrees.
std::vector<filter::detection::Point> outline(const filter::detection::Zone& shape);

}  // namespace orvantis::toolkit
