#include "recording/Las.h"

#include <cstdint>
#include <utility>

#include "recording/Bytes.h"
#include "recording/CoordinateColumns.h"
#include "recording/LasHeader.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

// Columns as the file has them, without scale and offset.
Points plainColumns(const LasHeader& header, std::span<const std::byte> bytes, const AxisNames& names,
                    FrameMemory& memory) {
  const auto axes = coordinateColumns(header.columns, atByte(0), names);
  PointLayout layout;
  layout.stride = header.stride;
  std::size_t offset = 0;
  for (std::size_t i = 0; i < header.columns.size(); ++i) {
    const Column& column = header.columns[i];
    const std::array<Coordinate*, 3> coordinates = {&layout.x, &layout.y, &layout.z};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (axes.at(axis) == i) {
        *coordinates.at(axis) = {offset, column.type};
      }
    }
    offset += column.count * sizeOf(column.type);
  }
  return memory.points.view(bytes.data() + header.begin, static_cast<std::size_t>(header.points), layout);
}

}  // namespace

Frame readLas(std::span<const std::byte> bytes, FrameMemory& memory, const AxisNames& axes) {
  LasHeader header = readLasHeader(bytes);
  if (axes != coordinateNames) {
    const Points points = plainColumns(header, bytes, axes, memory);
    return {points, std::move(header.columns)};
  }
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
