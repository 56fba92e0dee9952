#pragma once

#include <cstddef>
#include <vector>

#include "recording/PointBuffer.h"

namespace orvantis::toolkit {

/// What a reader of frames keeps from one frame to the next, so that it need not be allocated again.
struct FrameMemory {
  PointBuffer points;
  std::vector<float> floats;
  std::vector<double> doubles;
  std::vector<std::byte> bytes;
};

}  // namespace orvantis::toolkit
