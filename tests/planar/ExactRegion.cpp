#include "planar/ExactRegion.h"

#include <algorithm>
#include <cstddef>

namespace orvantis::testing {
namespace {

__extension__ typedef __int128 Integer;

struct Edge {
  GridPoint from;
  GridPoint to;

  Integer dx() const { return to.x - from.x; }
  Integer dy() const { return to.y - from.y; }
};

// A point with the coordinates x / scale and y / scale.
struct Place2d {
  Integer x;
  Integer y;
  Integer scale;
};

// A position along an edge, from 0 to 1; the divisor is positive.
struct Position {
  Integer numerator;
  Integer divisor;

  friend bool operator<(const Position& a, const Position& b) {
    return a.numerator * b.divisor < b.numerator * a.divisor;
  }
  friend bool operator==(const Position& a, const Position& b) {
    return a.numerator * b.divisor == b.numerator * a.divisor;
  }
};

Integer cross(Integer ax, Integer ay, Integer bx, Integer by) {
  return ax * by - ay * bx;
}

// Positive when the point is to the left of the edge.
Integer side(const Edge& edge, const Place2d& point) {
  return cross(edge.dx(), edge.dy(), point.x - edge.from.x * point.scale,
               point.y - edge.from.y * point.scale);
}

bool isOn(const Edge& edge, const Place2d& point) {
  const auto between = [&](Integer a, Integer b, Integer value) {
    return std::min(a, b) * point.scale <= value && value <= std::max(a, b) * point.scale;
  };
  return side(edge, point) == 0 && between(edge.from.x, edge.to.x, point.x) &&
         between(edge.from.y, edge.to.y, point.y);
}

Place2d at(GridPoint point) {
  return {point.x, point.y, 1};
}

bool areOnBothSides(const Edge& edge, const Edge& other) {
  const Integer first = side(edge, at(other.from));
  const Integer second = side(edge, at(other.to));
  return (first > 0 && second < 0) || (first < 0 && second > 0);
}

bool meet(const Edge& a, const Edge& b) {
  return isOn(a, at(b.from)) || isOn(a, at(b.to)) || isOn(b, at(a.from)) || isOn(b, at(a.to)) ||
         (areOnBothSides(a, b) && areOnBothSides(b, a));
}

std::vector<Edge> edgesOf(const GridPolygon& polygon) {
  std::vector<Edge> edges;
  for (const GridRing& ring : polygon) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
      edges.push_back({ring[i], ring[(i + 1) % ring.size()]});
    }
  }
  return edges;
}

Place locate(const std::vector<Edge>& edges, const Place2d& point) {
  bool isInside = false;
  for (const Edge& edge : edges) {
    if (isOn(edge, point)) {
      return Place::Border;
    }
    const bool startsAbove = edge.from.y * point.scale > point.y;
    const bool endsAbove = edge.to.y * point.scale > point.y;
    if (startsAbove != endsAbove && endsAbove == (side(edge, point) > 0)) {
      isInside = !isInside;
    }
  }
  return isInside ? Place::Inside : Place::Outside;
}

// Whether the polygon lies to the left of the direction of `along`, next to a point on its border.
bool isInsideOnTheLeft(const std::vector<Edge>& edges, const Edge& along, const Place2d& point) {
  bool isInside = false;
  const auto ahead = [&](const GridPoint& vertex) {
    return (vertex.x * point.scale - point.x) * along.dx() + (vertex.y * point.scale - point.y) * along.dy() >
           0;
  };
  for (const Edge& edge : edges) {
    const Integer position = side(edge, point);
    if (ahead(edge.from) != ahead(edge.to) && (ahead(edge.to) ? position < 0 : position > 0)) {
      isInside = !isInside;
    }
  }
  return isInside;
}

// Where the edge meets the others, with both its ends, in order.
std::vector<Position> cuts(const Edge& edge, const std::vector<Edge>& others) {
  std::vector<Position> positions = {{0, 1}, {1, 1}};
  for (const Edge& other : others) {
    const Integer wx = other.from.x - edge.from.x;
    const Integer wy = other.from.y - edge.from.y;
    const Integer turn = cross(edge.dx(), edge.dy(), other.dx(), other.dy());
    if (turn != 0) {
      const Integer sign = turn > 0 ? 1 : -1;
      const Integer along = sign * cross(wx, wy, other.dx(), other.dy());
      const Integer alongOther = sign * cross(wx, wy, edge.dx(), edge.dy());
      if (along >= 0 && along <= sign * turn && alongOther >= 0 && alongOther <= sign * turn) {
        positions.push_back({along, sign * turn});
      }
    } else if (cross(edge.dx(), edge.dy(), wx, wy) == 0) {
      const Integer length = edge.dx() * edge.dx() + edge.dy() * edge.dy();
      for (const GridPoint& end : {other.from, other.to}) {
        const Integer along = (end.x - edge.from.x) * edge.dx() + (end.y - edge.from.y) * edge.dy();
        if (along >= 0 && along <= length) {
          positions.push_back({along, length});
        }
      }
    }
  }
  std::sort(positions.begin(), positions.end());
  positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
  return positions;
}

Place2d middle(const Edge& edge, const Position& a, const Position& b) {
  const Integer numerator = a.numerator * b.divisor + b.numerator * a.divisor;
  const Integer scale = 2 * a.divisor * b.divisor;
  return {edge.from.x * scale + numerator * edge.dx(), edge.from.y * scale + numerator * edge.dy(), scale};
}

struct Shares {
  bool point = false;                 // any point at all
  bool interiors = false;             // the interiors meet
  bool firstInteriorOutside = false;  // the interior of the first has a part outside the second
  bool firstBorderOutside = false;    // the border of the first has one
  bool secondInteriorOutside = false;
};

// Whether the interiors of the two lie to the left of the edge, next to a point on it.
struct Sides {
  bool first;
  bool second;
};

// What the border of the first tells; the border of the second tells the rest. A spike has the same on both
// of its sides, so only the two sides of a piece tell anything about interiors.
void follow(const std::vector<Edge>& first, const std::vector<Edge>& second, Shares& shares) {
  std::vector<Edge> all = first;
  all.insert(all.end(), second.begin(), second.end());
  for (const Edge& edge : first) {
    shares.point = shares.point || locate(second, at(edge.from)) != Place::Outside;
    shares.firstBorderOutside = shares.firstBorderOutside || locate(second, at(edge.from)) == Place::Outside;
    if (edge.from == edge.to) {
      continue;
    }
    const Edge back = {edge.to, edge.from};
    const std::vector<Position> positions = cuts(edge, all);
    shares.point = shares.point || cuts(edge, second).size() > 2;
    for (std::size_t i = 0; i + 1 < positions.size(); ++i) {
      const Place2d point = middle(edge, positions[i], positions[i + 1]);
      const Place place = locate(second, point);
      shares.point = shares.point || place != Place::Outside;
      shares.firstBorderOutside = shares.firstBorderOutside || place == Place::Outside;
      for (const Edge& along : {edge, back}) {
        const Sides inside = {isInsideOnTheLeft(first, along, point),
                              isInsideOnTheLeft(second, along, point)};
        shares.interiors = shares.interiors || (inside.first && inside.second);
        shares.firstInteriorOutside = shares.firstInteriorOutside || (inside.first && !inside.second);
        shares.secondInteriorOutside = shares.secondInteriorOutside || (inside.second && !inside.first);
      }
    }
  }
}

}  // namespace

Place locate(const GridPolygon& polygon, GridPoint point) {
  return locate(edgesOf(polygon), at(point));
}

Relation relate(const GridPolygon& argument, const GridPolygon& zone) {
  const std::vector<Edge> argumentEdges = edgesOf(argument);
  const std::vector<Edge> zoneEdges = edgesOf(zone);
  Shares there;
  Shares back;
  follow(argumentEdges, zoneEdges, there);
  follow(zoneEdges, argumentEdges, back);
  const bool interiors = there.interiors || back.interiors;
  const bool argumentOutside = there.firstInteriorOutside || back.secondInteriorOutside;
  const bool zoneOutside = there.secondInteriorOutside || back.firstInteriorOutside;
  return {interiors && !argumentOutside && !there.firstBorderOutside, there.point || back.point,
          interiors && argumentOutside && zoneOutside};
}

bool segmentMeets(GridPoint first, GridPoint second, const GridPolygon& polygon) {
  const std::vector<Edge> edges = edgesOf(polygon);
  return locate(edges, at(first)) != Place::Outside ||
         std::any_of(edges.begin(), edges.end(), [&](const Edge& edge) {
           return meet({first, second}, edge);
         });
}

bool isSimple(const GridRing& ring) {
  if (ring.size() < 3 || doubledArea(ring) == 0) {
    return false;
  }
  const std::vector<Edge> edges = edgesOf({ring});
  for (std::size_t i = 0; i < edges.size(); ++i) {
    const Edge& edge = edges[i];
    const Edge& next = edges[(i + 1) % edges.size()];
    if (edge.from == edge.to || isOn(next, at(edge.from)) || isOn(edge, at(next.to))) {
      return false;
    }
    for (std::size_t j = i + 2; j < edges.size(); ++j) {
      const bool isNeighbour = (j + 1) % edges.size() == i;
      if (!isNeighbour && meet(edge, edges[j])) {
        return false;
      }
    }
  }
  return true;
}

std::int64_t doubledArea(const GridRing& ring) {
  std::int64_t sum = 0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const GridPoint& from = ring[i];
    const GridPoint& to = ring[(i + 1) % ring.size()];
    sum += (from.y - to.y) * (from.x + to.x);
  }
  return sum;
}

std::string toText(const GridPolygon& polygon) {
  std::string text;
  for (const GridRing& ring : polygon) {
    text += text.empty() ? "" : " / ";
    for (std::size_t i = 0; i < ring.size(); ++i) {
      text += (i == 0 ? "" : ", ") + std::to_string(ring[i].x) + " " + std::to_string(ring[i].y);
    }
  }
  return text;
}

std::ostream& operator<<(std::ostream& out, const Relation& relation) {
  return out << (relation.within ? "within" : "not within") << ", "
             << (relation.intersects ? "intersects" : "does not intersect") << ", "
             << (relation.overlaps ? "overlaps" : "does not overlap");
}

}  // namespace orvantis::testing
