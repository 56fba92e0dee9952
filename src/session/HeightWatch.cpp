#include "session/HeightWatch.h"

#include <algorithm>

#include "session/ZoneReach.h"

namespace orvantis::toolkit {
namespace {

template <typename Real>
bool hasPointBetween(const filter::classify::PointsView<Real>& points, double zMin, double zMax) {
  for (std::size_t i = 0; i < points.size; ++i) {
    const Coordinates p = coordinatesOf(points, i);
    if (p.z >= zMin && p.z <= zMax && p.isFinite()) {
      return true;
    }
  }
  return false;
}

// Takes only some points of a large frame, so that it takes no longer than a small one.
template <typename Real>
filter::classify::PointsView<Real> sampleOf(filter::classify::PointsView<Real> points) {
  constexpr std::size_t most = 2048;
  const std::size_t step = std::max<std::size_t>(1, points.size / most);
  points.stride *= step;
  points.size /= step;
  return points;
}

}  // namespace

HeightWatch::HeightWatch(const std::vector<FieldZone>& zones) {
  for (const FieldZone& zone : zones) {
    zones_.emplace_back().zone = zone;
  }
}

void HeightWatch::add(const Points& points) {
  const Points sample = std::visit([](const auto& view) { return Points(sampleOf(view)); }, points);
  for (ZoneHeights& heights : zones_) {
    const auto& volume = *heights.zone.volume;
    heights.isSeen = heights.isSeen || std::visit(
                                           [&volume](const auto& view) {
                                             return hasPointBetween(view, volume.getZMin(), volume.getZMax());
                                           },
                                           points);
    const ZoneReach reach = reachOf(volume, sample);
    heights.inside += reach.insideOutline();
    heights.between += reach.between;
    heights.lowest = std::min(heights.lowest, reach.lowest.value_or(heights.lowest));
    heights.highest = std::max(heights.highest, reach.highest.value_or(heights.highest));
  }
}

}  // namespace orvantis::toolkit
