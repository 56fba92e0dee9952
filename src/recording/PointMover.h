#pragma once

#include <vector>

#include "recording/Points.h"
#include "recording/Pose.h"

namespace orvantis::toolkit {

/// Moves points from the frame of a sensor into that of its site. It computes in double, and stores float32
/// points as float32 again. A point that is not finite is not finite afterwards.
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
