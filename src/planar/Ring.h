#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <core/Planar.h>

namespace orvantis::planar {

using core::PlanarPoint;
using core::PlanarPolygon;

using Ring = PlanarPolygon::ring_type;

constexpr std::size_t smallestRing = 3;

inline bool isFinite(const PlanarPoint& point) {
  return std::isfinite(point.x()) && std::isfinite(point.y());
}

inline bool isSamePlace(const PlanarPoint& a, const PlanarPoint& b) {
  return a.x() == b.x() && a.y() == b.y();
}

/// The number of vertices without a repeated first one.
inline std::size_t numVertices(const Ring& ring) {
  const bool isClosed = ring.size() > 1 && isSamePlace(ring.front(), ring.back());
  return ring.size() - (isClosed ? 1 : 0);
}

/// Whether the ring bounds a region: it has at least 3 vertices, and all of them are finite.
inline bool isRing(const Ring& ring) {
  return numVertices(ring) >= smallestRing && std::all_of(ring.begin(), ring.end(), isFinite);
}

}  // namespace orvantis::planar
