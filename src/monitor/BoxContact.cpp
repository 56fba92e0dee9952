#include "monitor/BoxContact.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "monitor/InsideRing.h"
#include "monitor/Orientation.h"

namespace orvantis::filter::monitor {
namespace {

using core::PlanarPoint;

// The time of `isSimple` grows with the square of this.
constexpr std::size_t mostVertices = 64;
// In units of the plan. The relations of polygons take cross products up to about 2e-16 for zero. Shapes of
// at least this size that are a margin apart give far larger ones.
constexpr double shortest = 1e-3;
constexpr double largestSensible = 1e100;

// How far two shapes must be apart, or one inside the other, so that rounding cannot change the answer.
double marginAt(double largestCoordinate) {
  return 1e-9 * (1.0 + largestCoordinate);
}

double cross(const PlanarPoint& a, const PlanarPoint& b) {
  return a.x() * b.y() - a.y() * b.x();
}

PlanarPoint between(const PlanarPoint& from, const PlanarPoint& to) {
  return {to.x() - from.x(), to.y() - from.y()};
}

// At least the length, and at most the length times the root of two.
double size(const PlanarPoint& vector) {
  return std::abs(vector.x()) + std::abs(vector.y());
}

double distanceFrom(const PlanarPoint& from, const PlanarPoint& to, const PlanarPoint& point) {
  const PlanarPoint way = between(from, to);
  const PlanarPoint off = between(from, point);
  const double share = (off.x() * way.x() + off.y() * way.y()) / (way.x() * way.x() + way.y() * way.y());
  const double nearest = std::clamp(share, 0.0, 1.0);
  return distance(point, {from.x() + nearest * way.x(), from.y() + nearest * way.y()});
}

// Whether two edges that share no vertex are farther than the margin from each other.
bool areApart(const PlanarPoint& a, const PlanarPoint& b, const PlanarPoint& c, const PlanarPoint& d,
              double margin) {
  const bool cross =
      orientation(a, b, c) * orientation(a, b, d) < 0 && orientation(c, d, a) * orientation(c, d, b) < 0;
  return !cross && distanceFrom(a, b, c) > margin && distanceFrom(a, b, d) > margin &&
         distanceFrom(c, d, a) > margin && distanceFrom(c, d, b) > margin;
}

// Whether the second edge does not turn back along the first.
bool goesOn(const PlanarPoint& first, const PlanarPoint& second) {
  const double ahead = first.x() * second.x() + first.y() * second.y();
  return ahead > 0.0 || std::abs(cross(first, second)) > 1e-6 * size(first) * size(second);
}

// `ring` with the first vertex repeated at the end.
bool isSimple(const std::vector<PlanarPoint>& ring, double margin) {
  const std::size_t numEdges = ring.size() - 1;
  for (std::size_t i = 0; i < numEdges; ++i) {
    const PlanarPoint edge = between(ring[i], ring[i + 1]);
    const std::size_t next = i + 1 < numEdges ? i + 1 : 0;
    if (largestOf(edge) < shortest || !goesOn(edge, between(ring[next], ring[next + 1]))) {
      return false;
    }
    for (std::size_t k = i + 2; k < numEdges && k + 1 < numEdges + i; ++k) {
      if (!areApart(ring[i], ring[i + 1], ring[k], ring[k + 1], margin)) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace

std::optional<BoxContact> BoxContact::of(std::vector<PlanarPoint> ring) {
  const auto isFinite = [](const PlanarPoint& vertex) {
    return std::isfinite(vertex.x()) && std::isfinite(vertex.y());
  };
  if (ring.empty() || ring.size() > mostVertices || !std::all_of(ring.begin(), ring.end(), isFinite)) {
    return std::nullopt;
  }
  if (ring.front().x() != ring.back().x() || ring.front().y() != ring.back().y()) {
    ring.push_back(ring.front());
  }
  BoxContact contact(std::move(ring));
  const bool isPlain = contact.ring_.size() > 3 && contact.largest_ <= largestSensible &&
                       isSimple(contact.ring_, marginAt(contact.largest_));
  return isPlain ? std::optional(std::move(contact)) : std::nullopt;
}

BoxContact::BoxContact(std::vector<PlanarPoint> ring) : ring_(std::move(ring)) {
  for (const PlanarPoint& vertex : ring_) {
    largest_ = std::max(largest_, largestOf(vertex));
  }
}

std::optional<bool> BoxContact::sharesAnyPoint(const Box& box) const {
  const double lengthSize = size(box.halfLength);
  const double widthSize = size(box.halfWidth);
  const double largest = std::max(box.largest, largest_);
  if (!(lengthSize >= shortest) || !(widthSize >= shortest) || !(largest <= largestSensible)) {
    return std::nullopt;
  }
  const double margin = marginAt(largest);
  // Positions along the box are multiplied by its half width, positions across it by its half length. So in
  // both directions the box reaches from -reach to reach.
  const double reach = std::abs(cross(box.halfLength, box.halfWidth));
  const double alongMargin = margin * widthSize;
  const double acrossMargin = margin * lengthSize;

  bool isSure = true;
  PlanarPoint from = ring_.front();
  PlanarPoint off = between(box.centre, from);
  double fromAlong = cross(off, box.halfWidth);
  double fromAcross = cross(box.halfLength, off);
  for (std::size_t i = 1; i < ring_.size(); ++i) {
    const PlanarPoint to = ring_[i];
    const PlanarPoint edge = between(from, to);
    const PlanarPoint toOff = between(box.centre, to);
    const double toAlong = cross(toOff, box.halfWidth);
    const double toAcross = cross(box.halfLength, toOff);
    const double lowAlong = std::min(fromAlong, toAlong);
    const double highAlong = std::max(fromAlong, toAlong);
    const double lowAcross = std::min(fromAcross, toAcross);
    const double highAcross = std::max(fromAcross, toAcross);
    const bool isBeyond = lowAlong > reach + alongMargin || highAlong < -reach - alongMargin ||
                          lowAcross > reach + acrossMargin || highAcross < -reach - acrossMargin;
    if (!isBeyond) {
      const double height = std::abs(cross(edge, off));
      const double boxHeight = std::abs(cross(edge, box.halfLength)) + std::abs(cross(edge, box.halfWidth));
      const double edgeMargin = margin * size(edge);
      if (height < boxHeight - edgeMargin && lowAlong < reach - alongMargin &&
          highAlong > alongMargin - reach && lowAcross < reach - acrossMargin &&
          highAcross > acrossMargin - reach) {
        return true;
      }
      isSure = isSure && height > boxHeight + edgeMargin;
    }
    from = to;
    off = toOff;
    fromAlong = toAlong;
    fromAcross = toAcross;
  }
  // No edge reaches into the box, so it lies wholly on one side of the border.
  return isSure ? std::optional(isInside(ring_, box.centre)) : std::nullopt;
}

}  // namespace orvantis::filter::monitor
