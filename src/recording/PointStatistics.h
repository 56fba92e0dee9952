#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "recording/Points.h"

namespace orvantis::toolkit {

/// The least and the greatest coordinate of some points.
struct Extent {
  double least = 0.0;
  double greatest = 0.0;

  bool operator==(const Extent&) const = default;
};

/// Statistics of the points of a frame, or of all frames of a recording. Its memory does not grow with them.
class PointStatistics {
 public:
  /// @throws std::bad_alloc, only on the first call
  void add(const Points& points);

  std::uint64_t points() const noexcept { return points_; }
  /// The points with a coordinate that is not finite.
  std::uint64_t noReturns() const noexcept { return noReturns_; }
  /// The points exactly at (0, 0, 0), with any signs.
  std::uint64_t atOrigin() const noexcept { return atOrigin_; }
  /// Of x, y and z, over the finite points; nothing when there are none.
  const std::optional<std::array<Extent, 3>>& extents() const noexcept { return extents_; }
  /// The height of most points, in steps of 0.1 m; of equally frequent heights the lowest. Points at the
  /// origin, and heights below -1000 m or above 10,000 m, are ignored; nothing when there are no other
  /// points.
  std::optional<double> ground() const;

 private:
  void addHeight(double height);

  std::uint64_t points_ = 0;
  std::uint64_t noReturns_ = 0;
  std::uint64_t atOrigin_ = 0;
  std::optional<std::array<Extent, 3>> extents_;
  std::vector<std::uint64_t> heights_;  // how many points are nearest to each step
};

}  // namespace orvantis::toolkit
