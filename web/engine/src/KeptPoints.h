#pragma once

#include <cstddef>
#include <vector>

#include <filter/classify/Points.h>

namespace orvantis::engine {

/// Points in memory of their own, in their order and precision.
class KeptPoints {
 public:
  KeptPoints() = default;
  /// @throws std::bad_alloc
  explicit KeptPoints(const filter::classify::Points& points);

  filter::classify::Points view() const;
  std::size_t bytes() const { return floats_.size() * sizeof(float) + doubles_.size() * sizeof(double); }

 private:
  std::vector<float> floats_;  // all x, then all y, then all z; of either kind
  std::vector<double> doubles_;
};

}  // namespace orvantis::engine
