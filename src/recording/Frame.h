#pragma once

#include <vector>

#include "recording/Points.h"

namespace orvantis::toolkit {

/// One frame of a sensor. The points are in the memory of the bytes that it was read from, or of the reader.
struct Frame {
  Points points;
  std::vector<Column> columns;  ///< as the file names them, in its order
};

}  // namespace orvantis::toolkit
