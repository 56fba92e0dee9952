#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <filter/detection/CounterLine.h>
#include <filter/detection/ZoneDetector.h>
#include <filter/monitor/TrackedObject.h>

namespace orvantis::benchmarks {

using Objects = std::vector<filter::monitor::TrackedObject>;

/// 24 octagons of 6 m about a ring of 25 m, and 8 exclusion zones.
filter::detection::ZoneDetector ringOfOctagons();

/// 24 zones of 2 to 8 m on a square of 84 m, a third each of turned rectangles, 16-gons that are not convex,
/// and sectors.
filter::detection::ZoneDetector mixedZones(std::uint64_t seed);

/// Segments from 10 to 40 m from the origin, in evenly distributed directions.
std::map<std::string, filter::detection::CounterLine> spokes(int count);

/// Boxes of cars and people that move in circles, so that they keep entering zones and crossing lines. They
/// go forwards and then back again, so there are twice as many frames as asked for.
std::vector<Objects> traffic(std::uint64_t seed, std::size_t numObjects, std::size_t numFrames);

/// Records of 16 bytes that begin with x, y and z, evenly distributed over a square of 120 m.
std::vector<float> records(std::uint64_t seed, std::size_t size);

}  // namespace orvantis::benchmarks
