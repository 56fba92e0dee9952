#pragma once

#include <cstddef>
#include <vector>

#include <filter/detection/Point.h>

namespace orvantis::toolkit {

/// Two edges of a ring that cross or touch where they should not. An edge has the index of its first vertex.
struct EdgeCrossing {
  std::size_t first = 0;
  std::size_t second = 0;
  filter::detection::Point at;  ///< a common point, rounded
  bool proper = false;          ///< whether they cross; else they touch or overlap
};

/// Every pair of edges because of which a ring is not simple. The ring is read as closed, and repeated
/// vertices are skipped. Exact. The coordinates must be finite.
std::vector<EdgeCrossing> findEdgeCrossings(const std::vector<filter::detection::Point>& ring);

/// Whether all vertices lie on one line.
bool isFlat(const std::vector<filter::detection::Point>& ring);

}  // namespace orvantis::toolkit
