#include "recording/PointStatistics.h"

#include <algorithm>
#include <cmath>

#include "points/PointAt.h"

namespace orvantis::toolkit {
namespace {

constexpr double stepsOfMetre = 10.0;
constexpr int lowest = -10000;  // steps
constexpr int highest = 100000;

}  // namespace

void PointStatistics::add(const Points& points) {
  heights_.resize(highest - lowest + 1);
  std::visit(
      [this](const auto& view) {
        points_ += view.size;
        for (std::size_t i = 0; i < view.size; ++i) {
          const auto point = pointAt(view, i);
          if (!isFinite(point)) {
            ++noReturns_;
            continue;
          }
          if (!extents_) {
            extents_.emplace();
            for (std::size_t axis = 0; axis < 3; ++axis) {
              (*extents_)[axis] = {static_cast<double>(point[axis]), static_cast<double>(point[axis])};
            }
          }
          for (std::size_t axis = 0; axis < 3; ++axis) {
            Extent& extent = (*extents_)[axis];
            extent.least = std::min(extent.least, static_cast<double>(point[axis]));
            extent.greatest = std::max(extent.greatest, static_cast<double>(point[axis]));
          }
          if (isAtOrigin(point)) {
            ++atOrigin_;
          } else {
            addHeight(static_cast<double>(point[2]));
          }
        }
      },
      points);
}

void PointStatistics::addHeight(double height) {
  const double step = std::floor(height * stepsOfMetre + 0.5);
  if (step >= lowest && step <= highest) {
    ++heights_[static_cast<std::size_t>(static_cast<int>(step) - lowest)];
  }
}

std::optional<double> PointStatistics::ground() const {
  const auto fullest = std::max_element(heights_.begin(), heights_.end());
  if (fullest == heights_.end() || *fullest == 0) {
    return std::nullopt;
  }
  return static_cast<double>(fullest - heights_.begin() + lowest) / stepsOfMetre;
}

}  // namespace orvantis::toolkit
