#include "recording/Las.h"

#include <cstdint>
#include <utility>

#include "recording/Bytes.h"
#include "recording/LasHeader.h"

namespace orvantis::toolkit {

Frame readLas(std::span<const std::byte> bytes, FrameMemory& memory) {
  LasHeader header = readLasHeader(bytes);
  const auto count = static_cast<std::size_t>(header.points);
  memory.doubles.resize(3 * count);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    double* const out = memory.doubles.data() + axis * count;
    const double scale = header.scale[axis];
    const double offset = header.offset[axis];
    for (std::size_t i = 0; i < count; ++i) {
      const std::byte* const record = bytes.data() + header.begin + i * header.stride;
      out[i] = static_cast<double>(loadLittleEndian<std::int32_t>(record + 4 * axis)) * scale + offset;
    }
  }
  const double* const x = memory.doubles.data();
  return {filter::classify::PointsView<double>::separate(x, x + count, x + 2 * count, count),
          std::move(header.columns)};
}

}  // namespace orvantis::toolkit
