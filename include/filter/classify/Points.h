#pragma once

#include <cstddef>
#include <variant>

#include <filter/classify/PointClassifier.h>

namespace orvantis::filter::classify {

/// The points of a frame as they lie in memory, in the precision of their source. Nothing is copied or owned.
using Points = std::variant<PointsView<float>, PointsView<double>>;

/// The number of points. Throws nothing.
inline std::size_t sizeOf(const Points& points) noexcept {
  const auto* floats = std::get_if<PointsView<float>>(&points);
  const auto* doubles = std::get_if<PointsView<double>>(&points);
  return floats != nullptr ? floats->size : doubles != nullptr ? doubles->size : 0;
}

}  // namespace orvantis::filter::classify
