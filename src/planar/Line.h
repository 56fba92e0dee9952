#pragma once

#include <vector>

#include "planar/Ring.h"

namespace orvantis::planar {

/// A straight line between two places, which may be the same.
struct Line {
  PlanarPoint from;
  PlanarPoint to;
};

/// Whether the three places are on one line, up to rounding, as the relations of Boost.Geometry see it.
bool areCollinear(const PlanarPoint& a, const PlanarPoint& b, const PlanarPoint& c);

/// Orders places on one line by the coordinate along which the line is longer. So it needs no difference of
/// coordinates, which might overflow.
class Along {
 public:
  explicit Along(const Line& line);

  bool operator()(const PlanarPoint& a, const PlanarPoint& b) const {
    return isX_ ? a.x() < b.x() : a.y() < b.y();
  }

 private:
  bool isX_;
};

/// Whether the two share any point. A region may be empty here and below.
bool meet(const Line& a, const Line& b);
bool meet(const Line& line, const PlanarPolygon& region);

/// Whether the region and the other lines together hold all of the line.
bool cover(const PlanarPolygon& region, const std::vector<Line>& others, const Line& line);

}  // namespace orvantis::planar
