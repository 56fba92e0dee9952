#include "session/HeightWatch.h"

#include <algorithm>
#include <cmath>

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

}  // namespace

void HeightWatch::add(const Points& points) {
  const auto isSeen = [&points](const FieldZone& zone) {
    return std::visit(
        [&zone](const auto& view) {
          return hasPointBetween(view, zone.volume->getZMin(), zone.volume->getZMax());
        },
        points);
  };
  unseen_.erase(std::remove_if(unseen_.begin(), unseen_.end(), isSeen), unseen_.end());
}

}  // namespace orvantis::toolkit
