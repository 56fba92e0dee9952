#pragma once

#include <cstddef>
#include <vector>

#include <filter/detection/Point.h>

namespace orvantis::toolkit {

/// Two edges of a ring that share more than they should. An edge is known by the vertex it begins at.
struct EdgeCrossing {
  std::size_t first = 0;
  std::size_t second = 0;
  filter::detection::Point at;  ///< a point that both have, rounded
  bool proper = false;          ///< whether they cross; otherwise they touch or run along each other
};

/// Every pair of edges that keeps a ring from being simple. The ring is read as closed and repeated vertices
/// are passed over. Decided exactly, whatever the coordinates; they must be finite.
std::vector<EdgeCrossing> findEdgeCrossings(const std::vector<filter::detection::Point>& ring);

/// Whether all vertices lie on one line.
bool isFlat(const std::vector<filter::detection::Point>& ring);

}  // namespace orvantis::toolkit
