#include <algorithm>
#include <set>
#include <utility>

#include <filter/detection/Polygon.h>

#include "document/EdgeCrossings.h"
#include "document/checks/Topics.h"
#include "document/checks/Values.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::Point;
using filter::detection::Polygon;

// The points under "Point"; nothing when one of them cannot be read.
std::optional<std::vector<Point>> pointsOf(const LocatedNode& shape) {
  std::vector<Point> points;
  for (const LocatedNode* node : shape.all("Point")) {
    const auto point = pointOf(*node);
    if (!point) {
      return std::nullopt;
    }
    points.push_back(*point);
  }
  return points;
}

std::size_t countDistinct(const std::vector<Point>& points) {
  std::set<std::pair<double, double>> distinct;
  for (const Point& point : points) {
    distinct.emplace(point.x(), point.y());
  }
  return distinct.size();
}

void checkEdges(const CheckedObject& polygon, const std::vector<Point>& ring, Report& report) {
  constexpr std::size_t shown = 3;  // the first few tell where to look
  const std::vector<EdgeCrossing> crossings = findEdgeCrossings(ring);
  const auto edge = [&ring](std::size_t from) {
    const std::size_t to = (from + 1) % ring.size();
    return std::to_string(from) + "-" + std::to_string(to) + " " + coordinates(ring[from]) + " to " +
           coordinates(ring[to]);
  };
  for (std::size_t i = 0; i < std::min(shown, crossings.size()); ++i) {
    const EdgeCrossing& crossing = crossings[i];
    report.add(FindingKind::CrossingEdges, polygon,
               "edge " + edge(crossing.first) + (crossing.proper ? " crosses" : " touches") + " edge " +
                   edge(crossing.second) + " at " + coordinates(crossing.at));
  }
  if (crossings.size() > shown) {
    report.add(FindingKind::CrossingEdges, polygon,
               counted(crossings.size() - shown, "more pair") + " of edges cross or touch");
  }
}

}  // namespace

void checkPolygon(const CheckedObject& polygon, Report& report) {
  const auto ring = pointsOf(polygon.node);
  if (!ring || ring->empty() || ring->size() > static_cast<std::size_t>(Polygon::MAX_NUM_POLYGON_SIDES)) {
    return;
  }
  const std::size_t distinct = countDistinct(*ring);
  if (distinct < static_cast<std::size_t>(Polygon::MIN_NUM_POLYGON_SIDES)) {
    report.add(FindingKind::EmptyRegion, polygon,
               "only " + std::to_string(distinct) + " distinct " + (distinct == 1 ? "vertex" : "vertices") +
                   "; a polygon needs 3");
  } else if (isFlat(*ring)) {
    report.add(FindingKind::EmptyRegion, polygon, "all vertices lie on one line; the polygon is empty");
  } else {
    checkEdges(polygon, *ring, report);
  }
}

void checkRectangle(const CheckedObject& rectangle, Report& report) {
  const std::size_t count = rectangle.node.all("Point").size();
  if (count == 1) {
    report.add(FindingKind::TooFew, rectangle, "only 1 corner; a rectangle needs 2 opposite ones");
  }
  const auto corners = pointsOf(rectangle.node);
  if (count == 2 && corners &&
      ((*corners)[0].x() == (*corners)[1].x() || (*corners)[0].y() == (*corners)[1].y())) {
    report.add(FindingKind::EmptyRegion, rectangle,
               "the two corners are not opposite ones; the rectangle is empty");
  }
}

}  // namespace orvantis::toolkit
