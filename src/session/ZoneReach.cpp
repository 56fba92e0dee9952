#include "session/ZoneReach.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "drawing/Outline.h"
#include "trigonometry/Length.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::Point;
using filter::detection::Zone;
using filter::detection::Zone3dBase;

constexpr double infinity = std::numeric_limits<double>::infinity();

// A shape with its bounding box, which is enough to decide about most points of a frame.
class Surroundings {
 public:
  explicit Surroundings(const Zone& shape) : shape_(shape), ring_(outline(shape)) {
    for (const Point& p : ring_) {
      left_ = std::min(left_, p.x());
      right_ = std::max(right_, p.x());
      bottom_ = std::min(bottom_, p.y());
      top_ = std::max(top_, p.y());
    }
    // Larger than the outline, because the drawn outline of a sector lies inside of its arc.
    const double margin = 0.01 * std::max(right_ - left_, top_ - bottom_);
    left_ -= margin;
    right_ += margin;
    bottom_ -= margin;
    top_ += margin;
  }

  bool contains(const Coordinates& p) const {
    return boxDistance(p) == 0.0 && shape_.within(Point(p.x, p.y));
  }

  // The distance of the point from the box. The shape is at least as far.
  double boxDistance(const Coordinates& p) const {
    return trigonometry::length(std::max({left_ - p.x, 0.0, p.x - right_}),
                                std::max({bottom_ - p.y, 0.0, p.y - top_}));
  }

  double distance(const Coordinates& p) const {
    double least = infinity;
    for (std::size_t i = 0; i < ring_.size(); ++i) {
      least = std::min(least, distance(p, ring_[i], ring_[(i + 1) % ring_.size()]));
    }
    return least;
  }

 private:
  static double distance(const Coordinates& p, const Point& from, const Point& to) {
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    const double length = dx * dx + dy * dy;
    const double along = length > 0.0 ? ((p.x - from.x()) * dx + (p.y - from.y()) * dy) / length : 0.0;
    const double share = std::clamp(along, 0.0, 1.0);
    return trigonometry::length(p.x - from.x() - share * dx, p.y - from.y() - share * dy);
  }

  const Zone& shape_;
  std::vector<Point> ring_;
  double left_ = infinity;
  double right_ = -infinity;
  double bottom_ = infinity;
  double top_ = -infinity;
};

void note(double z, std::uint64_t& count, ZoneReach& reach) {
  ++count;
  reach.lowest = std::min(reach.lowest.value_or(z), z);
  reach.highest = std::max(reach.highest.value_or(z), z);
}

template <typename Real>
ZoneReach reachIn(const Zone3dBase& zone, const Surroundings& surroundings,
                  const filter::classify::PointsView<Real>& points) {
  ZoneReach reach;
  NearestPoint nearest{{}, infinity};
  for (std::size_t i = 0; i < points.size; ++i) {
    const Coordinates p = coordinatesOf(points, i);
    if (!p.isFinite()) {
      continue;
    }
    if (surroundings.contains(p)) {
      if (p.z < zone.getZMin()) {
        note(p.z, reach.below, reach);
      } else if (p.z > zone.getZMax()) {
        note(p.z, reach.above, reach);
      } else {
        ++reach.between;
      }
    } else if (reach.insideOutline() == 0 && surroundings.boxDistance(p) < nearest.distance) {
      const double distance = surroundings.distance(p);
      if (distance < nearest.distance) {
        nearest = {p, distance};
      }
    }
  }
  if (reach.insideOutline() == 0 && std::isfinite(nearest.distance)) {
    reach.nearest = nearest;
  }
  return reach;
}

}  // namespace

ZoneReach reachOf(const Zone3dBase& zone, const Points& points) {
  const auto shape = zone.getZone2d();
  if (!shape) {
    return {};
  }
  const Surroundings surroundings(*shape);
  return std::visit([&](const auto& view) { return reachIn(zone, surroundings, view); }, points);
}

}  // namespace orvantis::toolkit
