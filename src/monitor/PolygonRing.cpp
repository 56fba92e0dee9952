#include "monitor/PolygonRing.h"

#include <vector>

namespace orvantis::filter::monitor {

core::PlanarPolygon::ring_type ringOf(const detection::Polygon& polygon) {
  std::vector<detection::Point> vertices;
  polygon.getPolygon(vertices);
  core::PlanarPolygon::ring_type ring;
  ring.reserve(vertices.size());
  for (const detection::Point& vertex : vertices) {
    ring.emplace_back(vertex.x(), vertex.y());
  }
  return ring;
}

}  // namespace orvantis::filter::monitor
