#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "recording/Points.h"

namespace orvantis::toolkit {

/// Which points of a sensor are left out.
struct PointLimits {
  bool dropsOrigin =
      false;  ///< whether to drop points exactly at (0, 0, 0), which many drivers write for "no return"
  /// In metres from the sensor, in space. A point at exactly this range stays.
  double minRange = 0.0;
  double maxRange = std::numeric_limits<double>::infinity();

  bool dropsNothing() const {
    return !dropsOrigin && !(minRange > 0.0) && maxRange == std::numeric_limits<double>::infinity();
  }
};

/// How many points were left out. A point at the origin counts only as such.
struct DroppedPoints {
  std::uint64_t atOrigin = 0;
  std::uint64_t tooNear = 0;
  std::uint64_t tooFar = 0;
};

/// The number of points exactly at (0, 0, 0), with any signs. Throws nothing.
std::uint64_t countAtOrigin(const Points& points);

/// Leaves points out. Points that are not finite stay, because they are counted as no returns. Ranges are
/// compared by their squares, computed in double.
///
/// One object is for one thread; its buffer is used again for the next frame.
class PointFilter {
 public:
  explicit PointFilter(const PointLimits& limits) : limits_(limits) {}

  /// @param dropped the numbers of points that were left out are added
  /// @return the points that are left, in their order: the given view itself when all are left, else a view
  ///   that is valid until the next call
  /// @throws std::bad_alloc
  Points keep(const Points& points, DroppedPoints& dropped);

 private:
  PointLimits limits_;
  std::vector<float> floats_;
  std::vector<double> doubles_;
};

}  // namespace orvantis::toolkit
