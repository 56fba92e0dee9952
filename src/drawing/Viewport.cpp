#include "drawing/Viewport.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

namespace orvantis::toolkit {
namespace {

using filter::detection::Point;

constexpr double largestWidth = 900.0;
constexpr double largestHeight = 760.0;
constexpr double smallestSide = 160.0;

}  // namespace

Viewport::Viewport(double left, double right, double bottom, double top) : left_(left), top_(top) {
  const double width = right - left;
  const double height = top - bottom;
  if (!(width < 1e9) || !(height < 1e9)) {
    throw std::runtime_error("zones, lines and tracks are too far apart to draw");
  }
  scale_ = std::min(largestWidth / width, largestHeight / height);
  size_ = {width * scale_, height * scale_};
  // Else the lines of the grid and the corners of a zone would have the same coordinates.
  constexpr double sharpness = 0.1;  // pixels
  const double farthest = std::max({std::abs(left), std::abs(right), std::abs(bottom), std::abs(top)});
  if (!(farthest * std::numeric_limits<double>::epsilon() * scale_ < sharpness)) {
    throw std::runtime_error("zones, lines and tracks are too far from the origin to draw");
  }
  // A long and thin plan shows more of the plane, so that its short side is large enough to read.
  if (size_.x < smallestSide) {
    left_ -= (smallestSide - size_.x) / 2.0 / scale_;
    size_.x = smallestSide;
  }
  if (size_.y < smallestSide) {
    top_ += (smallestSide - size_.y) / 2.0 / scale_;
    size_.y = smallestSide;
  }
}

PixelRing Viewport::toPixels(const std::vector<Point>& ring) const {
  PixelRing pixels;
  for (const Point& p : ring) {
    pixels.push_back(toPixel(p));
  }
  return pixels;
}

Viewport viewportFor(const PlanContent& content) {
  if (content.extent) {
    const PlanContent::Extent& e = *content.extent;
    return {e.left, e.right, e.bottom, e.top};
  }
  std::vector<Point> points;
  for (const PlanContent::Area& area : content.areas) {
    points.insert(points.end(), area.ring.begin(), area.ring.end());
  }
  for (const PlanContent::Line& line : content.lines) {
    points.push_back(line.first);
    points.push_back(line.second);
  }
  for (const PlanContent::Track& track : content.tracks) {
    points.insert(points.end(), track.path.begin(), track.path.end());
  }
  if (points.empty()) {
    for (const PlanContent::Dot& dot : content.dots) {
      points.push_back(dot.at);
    }
  }
  if (points.empty()) {
    points.emplace_back(0.0, 0.0);
  }
  const auto [left, right] = std::minmax_element(
      points.begin(), points.end(), [](const Point& a, const Point& b) { return a.x() < b.x(); });
  const auto [bottom, top] = std::minmax_element(
      points.begin(), points.end(), [](const Point& a, const Point& b) { return a.y() < b.y(); });
  const double size = std::max({right->x() - left->x(), top->y() - bottom->y(), 1.0});
  const double padding = 0.06 * size;
  // The origin, where the sensor often is, is shown if it is near.
  const auto reach = [size](double low, double high) {
    return low - size < 0.0 && high + size > 0.0 ? std::pair(std::min(low, 0.0), std::max(high, 0.0))
                                                 : std::pair(low, high);
  };
  const auto [x0, x1] = reach(left->x(), right->x());
  const auto [y0, y1] = reach(bottom->y(), top->y());
  return {x0 - padding, x1 + padding, y0 - padding, y1 + padding};
}

}  // namespace orvantis::toolkit
