#pragma once

#include <vector>

#include "recording/Points.h"
#include "recording/Pose.h"

namespace orvantis::toolkit {

/// Brings points from the frame of a sensor into that of its site. They are computed in double, and stored as
/// what they were: float32 again where they were float32. A point that is not finite is not finite
/// afterwards.
///
/// One object is for one thread; its buffer is used again for the next frame.
class PointMover {
 public:
  /// @return valid until the next call
  /// @throws std::bad_alloc
  Points move(const Points& points, const Pose& pose);

 private:
  std::vector<float> floats_;
  std::vector<double> doubles_;
};

}  // namespace orvantis::toolkit
