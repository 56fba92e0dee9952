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

/// What the points of a frame, or of all frames of a recording, are. Its memory does not grow with them.
class PointStatistics {
 public:
  /// @throws std::bad_alloc the first time only
  void add(const Points& points);

  std::uint64_t points() const noexcept { return points_; }
  /// Those with a coordinate that is not finite.
  std::uint64_t noReturns() const noexcept { return noReturns_; }
  /// Those exactly at (0, 0, 0), of either sign.
  std::uint64_t atOrigin() const noexcept { return atOrigin_; }
  /// Of x, y and z, over the points that are finite; nothing when there is none.
  const std::optional<std::array<Extent, 3>>& extents() const noexcept { return extents_; }
  /// The height, in steps of 0.1 m, that more points are nearest to than to any other; the lowest of several.
  /// Points at the origin, and heights below -1000 m or above 10,000 m, are left out; nothing when that
  /// leaves none.
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
