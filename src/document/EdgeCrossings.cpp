#include "document/EdgeCrossings.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <boost/multiprecision/cpp_int.hpp>

namespace orvantis::toolkit {
namespace {

using filter::detection::Point;
// Every double is a fraction, so fractions decide without rounding. They are slow, and few turns need them.
using Exact = boost::multiprecision::cpp_rational;

struct Edge {
  std::size_t index;
  Point from;
  Point to;
};

int signOf(double number) {
  return number > 0.0 ? 1 : number < 0.0 ? -1 : 0;
}

// The turn by rounded numbers, where they cannot be wrong. The two differences of a product, the product and
// the difference of the products are each wrong by at most half a unit in the last place, 2^-53 of them: not
// by as much as 2^-51 of the products' sum in all. That holds as long as nothing loses digits to the smallest
// double. What overflows is never sure, since infinity is not more than infinity.
std::optional<int> plainTurn(const Point& a, const Point& b, const Point& c) {
  constexpr double smallest = 1e-280;
  const double left = (b.x() - a.x()) * (c.y() - a.y());
  const double right = (b.y() - a.y()) * (c.x() - a.x());
  const double sum = std::fabs(left) + std::fabs(right);
  const double cross = left - right;
  const bool isSure = sum > smallest && std::fabs(cross) > 0x1p-51 * sum;
  return isSure ? std::optional(signOf(cross)) : std::nullopt;
}

// The sign of the turn a -> b -> c: 1 to the left, -1 to the right, 0 straight on.
int turn(const Point& a, const Point& b, const Point& c) {
  if (const auto sign = plainTurn(a, b, c)) {
    return *sign;
  }
  const Exact ax(a.x());
  const Exact ay(a.y());
  const Exact cross = (Exact(b.x()) - ax) * (Exact(c.y()) - ay) - (Exact(b.y()) - ay) * (Exact(c.x()) - ax);
  return cross.sign();
}

bool equal(const Point& a, const Point& b) {
  return a.x() == b.x() && a.y() == b.y();
}

// Whether p, known to lie on the line of the edge, lies on the edge itself.
bool isBetween(const Edge& edge, const Point& p) {
  return std::min(edge.from.x(), edge.to.x()) <= p.x() && p.x() <= std::max(edge.from.x(), edge.to.x()) &&
         std::min(edge.from.y(), edge.to.y()) <= p.y() && p.y() <= std::max(edge.from.y(), edge.to.y());
}

Point crossingPoint(const Edge& a, const Edge& b) {
  const Exact dx = Exact(a.to.x()) - Exact(a.from.x());
  const Exact dy = Exact(a.to.y()) - Exact(a.from.y());
  const Exact ex = Exact(b.to.x()) - Exact(b.from.x());
  const Exact ey = Exact(b.to.y()) - Exact(b.from.y());
  const Exact t =
      ((Exact(b.from.x()) - Exact(a.from.x())) * ey - (Exact(b.from.y()) - Exact(a.from.y())) * ex) /
      (dx * ey - dy * ex);
  return {Exact(Exact(a.from.x()) + t * dx).convert_to<double>(),
          Exact(Exact(a.from.y()) + t * dy).convert_to<double>()};
}

// Whether two edges with the common vertex `shared` fold back onto each other. Gives the end of one that lies
// on the other.
std::optional<Point> foldsBack(const Point& before, const Point& shared, const Point& after) {
  if (turn(before, shared, after) != 0) {
    return std::nullopt;
  }
  if (isBetween({0, before, shared}, after)) {
    return after;
  }
  if (isBetween({0, shared, after}, before)) {
    return before;
  }
  return std::nullopt;
}

std::optional<EdgeCrossing> meet(const Edge& a, const Edge& b) {
  const int fromSide = turn(a.from, a.to, b.from);
  const int toSide = turn(a.from, a.to, b.to);
  const int aFromSide = turn(b.from, b.to, a.from);
  const int aToSide = turn(b.from, b.to, a.to);
  if (fromSide * toSide < 0 && aFromSide * aToSide < 0) {
    return EdgeCrossing{a.index, b.index, crossingPoint(a, b), true};
  }
  if (fromSide == 0 && isBetween(a, b.from)) {
    return EdgeCrossing{a.index, b.index, b.from, false};
  }
  if (toSide == 0 && isBetween(a, b.to)) {
    return EdgeCrossing{a.index, b.index, b.to, false};
  }
  if (aFromSide == 0 && isBetween(b, a.from)) {
    return EdgeCrossing{a.index, b.index, a.from, false};
  }
  if (aToSide == 0 && isBetween(b, a.to)) {
    return EdgeCrossing{a.index, b.index, a.to, false};
  }
  return std::nullopt;
}

std::vector<Edge> edgesOf(const std::vector<Point>& ring) {
  std::vector<Edge> edges;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const Point& next = ring[(i + 1) % ring.size()];
    if (!equal(ring[i], next)) {
      edges.push_back({i, ring[i], next});
    }
  }
  return edges;
}

}  // namespace

std::vector<EdgeCrossing> findEdgeCrossings(const std::vector<Point>& ring) {
  const std::vector<Edge> edges = edgesOf(ring);
  std::vector<EdgeCrossing> crossings;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    for (std::size_t j = i + 1; j < edges.size(); ++j) {
      std::optional<EdgeCrossing> crossing;
      if (j == i + 1 || (i == 0 && j + 1 == edges.size())) {
        const Edge& earlier = j == i + 1 ? edges[i] : edges[j];
        const Edge& later = j == i + 1 ? edges[j] : edges[i];
        if (const auto at = foldsBack(earlier.from, earlier.to, later.to)) {
          crossing = EdgeCrossing{edges[i].index, edges[j].index, *at, false};
        }
      } else {
        crossing = meet(edges[i], edges[j]);
      }
      if (crossing) {
        crossings.push_back(*crossing);
      }
    }
  }
  return crossings;
}

bool isFlat(const std::vector<Point>& ring) {
  for (std::size_t i = 2; i < ring.size(); ++i) {
    // Tries all earlier pairs, because the first two vertices may be the same point, which is not a line.
    for (std::size_t j = 1; j < i; ++j) {
      if (turn(ring[0], ring[j], ring[i]) != 0) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace orvantis::toolkit
