#include "drawing/Outline.h"

#include <cmath>

#include <filter/detection/Sector.h>

#include "document/Shapes.h"
#include "trigonometry/Trigonometry.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::Point;
using filter::detection::Sector;

std::vector<Point> outlineOf(const Sector& sector) {
  const Arc arc = arcOf(sector);
  constexpr double stepDegrees = 3.0;
  const int steps = static_cast<int>(std::ceil(arc.opening * 360.0 / fullTurn / stepDegrees));
  std::vector<Point> ring;
  const bool isDisc = arc.opening >= fullTurn;
  if (!isDisc) {
    ring.emplace_back(0.0, 0.0);
  }
  for (int i = 0; i < (isDisc ? steps : steps + 1); ++i) {
    const double angle = arc.from + arc.opening * i / steps;
    ring.emplace_back(arc.radius * trigonometry::cosine(angle), arc.radius * trigonometry::sine(angle));
  }
  return ring;
}

}  // namespace

std::vector<Point> outline(const filter::detection::Zone& shape) {
  // A sector from a document has its origin at (0, 0), because documents have no origins.
  if (const auto* sector = dynamic_cast<const Sector*>(&shape)) {
    return outlineOf(*sector);
  }
  return vertices(shape);
}

}  // namespace orvantis::toolkit
