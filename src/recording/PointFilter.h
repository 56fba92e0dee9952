#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "recording/Points.h"

namespace orvantis::toolkit {

/// Which points of a sensor are left out.
struct PointLimits {
  bool dropsOrigin = false;  ///< those exactly at (0, 0, 0): "no return" to many drivers
  /// Metres from the sensor, in space; a point at exactly this range stays.
  double minRange = 0.0;
  double maxRange = std::numeric_limits<double>::infinity();

  bool dropsNothing() const {
    return !dropsOrigin && !(minRange > 0.0) && maxRange == std::numeric_limits<double>::infinity();
  }
};

/// How many points were left out, each of them once: those at the origin first.
struct DroppedPoints {
  std::uint64_t atOrigin = 0;
  std::uint64_t tooNear = 0;
  std::uint64_t tooFar = 0;
};

/// The points exactly at (0, 0, 0), of either sign. Throws nothing.
std::uint64_t countAtOrigin(const Points& points);

/// Leaves points out. Those that are not finite stay: they are no returns, and counted as such. Ranges are
/// compared by their squares, computed in double.
///
/// One object is for one thread; its buffer is used again for the next frame.
class PointFilter {
 public:
  explicit PointFilter(const PointLimits& limits) : limits_(limits) {}

  /// @param dropped what was left out is added
  /// @return the points that are left, in their order: the given view itself where all are left; else valid
  /// until the next call
  /// @throws std::bad_alloc
  Points keep(const Points& points, DroppedPoints& dropped);

 private:
  PointLimits limits_;
  std::vector<float> floats_;
  std::vector<double> doubles_;
};

}  // namespace orvantis::toolkit
