#pragma once

#include <cstddef>
#include <vector>

#include "recording/Points.h"

namespace orvantis::toolkit {

/// Makes a view of points in memory with any layout. When all three coordinates are float32, or all are
/// float64, in the byte order of this machine, it is a view of that memory. Otherwise the coordinates are
/// converted into the buffer, which is reused: to float32 if that keeps every value (float32 of the other
/// byte order, integers of 1 and 2 bytes), else to float64. Integers of 8 bytes are rounded to the nearest
/// double.
///
/// One object is for one thread.
class PointBuffer {
 public:
  /// Records of `layout.stride` bytes, `count` of them; all of them must be there. The view is valid until
  /// the next call, and as long as the records.
  /// @throws std::bad_alloc
  Points view(const std::byte* records, std::size_t count, const PointLayout& layout);

  /// The same for columns: the values of each coordinate follow one another from its offset on. The stride of
  /// the layout is ignored.
  Points viewColumns(const std::byte* columns, std::size_t count, const PointLayout& layout);

 private:
  std::vector<float> floats_;
  std::vector<double> doubles_;
};

}  // namespace orvantis::toolkit
