#pragma once

#include <filter/detection/ZoneDetector.h>

namespace orvantis::benchmarks {

/// Configurations to classify points with. Zones fill the field slots first, then the exclusion list.
enum class Shapes {
  Polygons,  ///< 16-gons of uneven radius
  Mixed,     ///< polygons of 3 to 16 vertices, turned rectangles and sectors in equal parts
};

/// Zones of 10 to 30 m across, strewn over `extent` x `extent` m.
filter::detection::ZoneDetector site(Shapes shapes, int numZones, int numVertices = 16,
                                     double extent = 100.0);

/// 56 stars of 10 m on one spot, each turned a little more.
filter::detection::ZoneDetector stackedStars();

}  // namespace orvantis::benchmarks
