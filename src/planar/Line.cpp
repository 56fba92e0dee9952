#include "planar/Line.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <boost/geometry/algorithms/covered_by.hpp>
#include <boost/geometry/algorithms/intersects.hpp>
#include <boost/geometry/geometries/linestring.hpp>
#include <boost/geometry/geometries/segment.hpp>
#include <boost/geometry/strategies/cartesian.hpp>

namespace orvantis::planar {
namespace {

namespace bg = boost::geometry;

using Segment = bg::model::segment<PlanarPoint>;

bool covers(const PlanarPolygon& region, const Line& line) {
  return !region.outer().empty() &&
         bg::covered_by(bg::model::linestring<PlanarPoint>{line.from, line.to}, region);
}

// Appends what is left of the piece when the line from `low` to `high` is cut out of it. All of them lie on
// one line, in the order of `before`.
void cutOut(const PlanarPoint& low, const PlanarPoint& high, const Along& before, const Line& piece,
            std::vector<Line>& left) {
  if (before(piece.to, low) || before(high, piece.from)) {
    left.push_back(piece);
    return;
  }
  if (before(piece.from, low)) {
    left.push_back({piece.from, low});
  }
  if (before(high, piece.to)) {
    left.push_back({high, piece.to});
  }
}

}  // namespace

bool areCollinear(const PlanarPoint& a, const PlanarPoint& b, const PlanarPoint& c) {
  return bg::strategy::side::services::default_strategy<bg::cartesian_tag>::type::apply(a, b, c) == 0;
}

Along::Along(const Line& line)
    : isX_(std::abs(line.to.x() - line.from.x()) >= std::abs(line.to.y() - line.from.y())) {}

bool meet(const Line& a, const Line& b) {
  return bg::intersects(Segment(a.from, a.to), Segment(b.from, b.to));
}

bool meet(const Line& line, const PlanarPolygon& region) {
  return !region.outer().empty() && bg::intersects(Segment(line.from, line.to), region);
}

bool cover(const PlanarPolygon& region, const std::vector<Line>& others, const Line& line) {
  if (isSamePlace(line.from, line.to)) {
    return meet(line, region) ||
           std::any_of(others.begin(), others.end(), [&](const Line& other) { return meet(line, other); });
  }
  const Along before(line);
  std::vector<Line> rest = {before(line.to, line.from) ? Line{line.to, line.from} : line};
  // A cut lies at the end of another line, which is a vertex, so no coordinate is rounded.
  for (const Line& other : others) {
    if (areCollinear(line.from, line.to, other.from) && areCollinear(line.from, line.to, other.to)) {
      const auto [low, high] = std::minmax(other.from, other.to, before);
      std::vector<Line> left;
      for (const Line& piece : rest) {
        cutOut(low, high, before, piece, left);
      }
      rest = std::move(left);
    }
  }
  return std::all_of(rest.begin(), rest.end(), [&](const Line& piece) { return covers(region, piece); });
}

}  // namespace orvantis::planar
