#include "session/ScanDots.h"

#include <cstdint>
#include <vector>

#include <filter/classify/PointClassifier.h>

#include "session/Coordinates.h"

namespace orvantis::toolkit {

void addScan(const filter::detection::ZoneDetector& detector, const filter::classify::Points& points,
             PlanContent& plan) {
  constexpr std::uint64_t fieldZones = (std::uint64_t{1} << 24U) - 1;
  std::vector<std::uint64_t> masks(sizeOf(points));
  const filter::classify::PointClassifier classifier(detector);
  const auto add = [&](const auto& view) {
    classifier.classify(view, masks.data());
    for (std::size_t i = 0; i < view.size; ++i) {
      const Coordinates p = coordinatesOf(view, i);
      if (p.isFinite()) {
        const bool isCounted = masks[i] <= fieldZones && masks[i] != 0;
        plan.dots.push_back({filter::detection::Point(p.x, p.y), isCounted, p.z});
      }
    }
  };
  std::visit(add, points);
}

}  // namespace orvantis::toolkit
