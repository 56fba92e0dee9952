#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <filter/detection/ZoneDetector.h>

namespace orvantis::benchmarks {

/// Configurations to classify points with. Zones fill the field slots first, then the exclusion list.
enum class Shapes {
  Polygons,  ///< 16-gons of uneven radius
  Mixed,     ///< polygons of 3 to 16 vertices, turned rectangles and sectors in equal parts
};

constexpr int mostZones = 56;

/// Zones at random places of `extent` x `extent` m, 10 to 30 m wide for 100 m and in proportion for other
/// extents.
filter::detection::ZoneDetector site(Shapes shapes, int numZones, int numVertices = 16,
                                     double extent = 100.0);

/// 56 mixed zones of 2 to 8 m radius on 84 m x 84 m.
enum class Arrangement {
  Strewn,     ///< anywhere
  Clustered,  ///< about five places
  Nested,     ///< about eight places, one within the other
  Slivers     ///< anywhere, 30 times as long as wide
};
filter::detection::ZoneDetector denseSite(Arrangement arrangement, std::uint64_t seed);

/// 55 zones at random places, and one zone that far from the middle in both directions. For 0 m, only the 55
/// zones.
filter::detection::ZoneDetector siteWithFarZone(double distance, std::uint64_t seed);

/// 56 zones of 1 cm at random places of 100 m x 100 m.
filter::detection::ZoneDetector tinyZones(std::uint64_t seed);

/// 56 stars of 10 m on one spot, each turned a little more.
filter::detection::ZoneDetector stackedStars();

}  // namespace orvantis::benchmarks
