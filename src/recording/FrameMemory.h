#pragma once

#include <cstddef>
#include <vector>

#include "recording/PointBuffer.h"

namespace orvantis::toolkit {

/// Memory that a reader of frames uses again for each frame.
struct FrameMemory {
  PointBuffer points;
  std::vector<float> floats;
  std::vector<double> doubles;
  std::vector<std::byte> bytes;
};

}  // namespace orvantis::toolkit
