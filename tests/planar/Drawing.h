#pragma once

#include <vector>

#include <core/Planar.h>
#include <filter/detection/Point.h>

#include "planar/ExactRegion.h"

namespace orvantis::testing {

/// How a vertex of the grid becomes coordinates: offset + step * grid.
struct Scale {
  double offset = 0.0;
  double step = 1.0;
};

/// One of the ways to write down the same ring.
struct Writing {
  std::size_t start = 0;      ///< the vertex that comes first
  bool isReversed = false;    ///< the other winding
  bool repeatsFirst = false;  ///< the first vertex again at the end
};

/// Every start vertex, both windings, with and without a repeated first vertex.
std::vector<Writing> writingsOf(const GridRing& ring);
GridRing written(const GridRing& ring, const Writing& writing);

/// One of the eight symmetries of the grid, by number from 0 to 7.
GridPolygon mirrored(const GridPolygon& polygon, int symmetry);

core::PlanarPolygon planar(const GridPolygon& polygon, const Scale& scale = {});
std::vector<filter::detection::Point> points(const GridRing& ring, const Scale& scale = {});

/// What a zone of those vertices answers about the argument.
Relation answers(const core::PlanarPolygon& argument, const std::vector<filter::detection::Point>& zone);

}  // namespace orvantis::testing
