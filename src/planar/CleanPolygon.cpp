#include "planar/CleanPolygon.h"

#include <cstddef>
#include <utility>

#include <boost/geometry/algorithms/correct.hpp>
#include <boost/geometry/strategies/cartesian.hpp>

namespace orvantis::planar {
namespace {

// Cuts spikes off a ring: when the ring turns back at a vertex, it removes that vertex and keeps the stretch
// that the ring covers twice as a line.
class SpikeCutter {
 public:
  explicit SpikeCutter(std::vector<Line>& spikes) : spikes_(spikes) {}

  void add(const PlanarPoint& vertex) {
    kept_.push_back(vertex);
    while (shortens()) {
    }
  }

  // The closed ring that is left; empty when the whole ring was spikes.
  Ring close() {
    while (shortensAtTheJoint()) {
    }
    if (numKept() < smallestRing) {
      spikes_.push_back({kept_[first_], kept_.back()});
      return {};
    }
    Ring ring(kept_.begin() + static_cast<std::ptrdiff_t>(first_), kept_.end());
    ring.push_back(PlanarPoint(ring.front()));
    return ring;
  }

 private:
  std::size_t numKept() const { return kept_.size() - first_; }
  const PlanarPoint& fromEnd(std::size_t i) const { return kept_[kept_.size() - i]; }

  bool shortens() {
    if (numKept() >= 2 && isSamePlace(fromEnd(1), fromEnd(2))) {
      kept_.pop_back();
      return true;
    }
    if (numKept() >= 3 && cuts(fromEnd(3), fromEnd(2), fromEnd(1))) {
      kept_.erase(kept_.end() - 2);
      return true;
    }
    return false;
  }

  // The same at the joint, where the first vertex follows the last one.
  bool shortensAtTheJoint() {
    if (numKept() < smallestRing) {
      return false;
    }
    if (isSamePlace(fromEnd(1), kept_[first_]) || cuts(fromEnd(2), fromEnd(1), kept_[first_])) {
      kept_.pop_back();
      return true;
    }
    if (cuts(fromEnd(1), kept_[first_], kept_[first_ + 1])) {
      ++first_;
      return true;
    }
    return false;
  }

  bool cuts(const PlanarPoint& before, const PlanarPoint& tip, const PlanarPoint& after) {
    const Along isLess({before, tip});
    const bool comesFromBelow = isLess(before, tip);
    if (!areCollinear(before, tip, after) || isLess(after, tip) != comesFromBelow) {
      return false;
    }
    const bool isAfterNearer = isLess(before, after) == comesFromBelow;
    spikes_.push_back({tip, isAfterNearer ? after : before});
    return true;
  }

  std::vector<Line>& spikes_;
  std::vector<PlanarPoint> kept_;
  std::size_t first_ = 0;  // index in kept_ of the first vertex that is left
};

Ring cutSpikes(const Ring& ring, std::vector<Line>& spikes) {
  SpikeCutter cutter(spikes);
  for (const PlanarPoint& vertex : ring) {
    cutter.add(vertex);
  }
  return cutter.close();
}

void addEdges(const Ring& ring, std::vector<Line>& lines) {
  for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
    lines.push_back({ring[i], ring[i + 1]});
  }
}

}  // namespace

CleanPolygon clean(const PlanarPolygon& polygon) {
  CleanPolygon result;
  if (!isRing(polygon.outer())) {
    return result;
  }
  result.region.outer() = cutSpikes(polygon.outer(), result.spikes);
  for (const Ring& hole : polygon.inners()) {
    if (!isRing(hole)) {
      continue;
    }
    Ring gap = cutSpikes(hole, result.spikes);
    if (gap.empty()) {
      continue;
    }
    if (result.region.outer().empty()) {
      addEdges(gap, result.spikes);  // a polygon without an interior has no holes
    } else {
      result.region.inners().push_back(std::move(gap));
    }
  }
  boost::geometry::correct(result.region);
  return result;
}

}  // namespace orvantis::planar
