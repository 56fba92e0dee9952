#pragma once

#include <vector>

#include "recording/Points.h"

namespace orvantis::toolkit {

/// One frame of a sensor. Its points are views into the bytes that were read, or into memory of the reader.
struct Frame {
  Points points;
  std::vector<Column> columns;  ///< with the names and in the order of the file
};

}  // namespace orvantis::toolkit
