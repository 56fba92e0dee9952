#pragma once

#include <cstdint>
#include <random>

#include "planar/ExactRegion.h"

namespace orvantis::testing {

/// Random rings on a small grid, where touching and shared edges are common. One seed, one sequence.
class RandomRings {
 public:
  explicit RandomRings(std::uint32_t seed) : engine_(seed) {}

  std::int64_t number(std::int64_t low, std::int64_t high);
  GridPoint point(std::int64_t size);
  /// Simple, of 3 to `maxVertices` vertices with coordinates from 0 to `size`.
  GridRing simple(std::int64_t size, int maxVertices);
  /// Any vertices at all: they may repeat, run back and cross.
  GridRing any(std::int64_t size, int maxVertices);
  /// A simple ring with a hole in it that may touch the outer ring in single points.
  GridPolygon withHole(std::int64_t size, int maxVertices);
  /// The same region with repeated vertices, which change nothing.
  GridRing withRepeatedVertices(GridRing ring);
  /// The same region with one to three spikes, of any kind and within a grid of `size`.
  GridRing withSpikes(GridRing ring, std::int64_t size);

 private:
  GridRing spike(GridPoint from, GridPoint to, std::int64_t size);

  std::mt19937 engine_;
};

}  // namespace orvantis::testing
