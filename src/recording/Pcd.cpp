#include "recording/Pcd.h"

#include <algorithm>
#include <string>

#include "recording/Bytes.h"
#include "recording/CoordinateColumns.h"
#include "recording/LineCursor.h"
#include "recording/Lzf.h"
#include "recording/NumberRows.h"
#include "recording/PcdHeader.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

using Axes = std::array<std::size_t, 3>;

[[noreturn]] void refuseShort(const PcdHeader& header, std::size_t begin, std::size_t size) {
  const std::uint64_t whole = (size - begin) / header.pointSize();
  throw ReadError(atByte(size), "the file ends inside point " + std::to_string(whole + 1) + " of the " +
                                    std::to_string(header.points) + " points of its header, each of " +
                                    std::to_string(header.pointSize()) + " bytes");
}

// The layout of one point or, with `points` above 1, of the columns of all points.
PointLayout layoutOf(const PcdHeader& header, const Axes& axes, std::size_t points) {
  PointLayout layout;
  layout.stride = static_cast<std::size_t>(header.pointSize());
  std::size_t offset = 0;
  for (std::size_t i = 0; i < header.fields.size(); ++i) {
    const Column& field = header.fields[i];
    const std::array<Coordinate*, 3> coordinates = {&layout.x, &layout.y, &layout.z};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (axes[axis] == i) {
        *coordinates[axis] = {offset, field.type};
      }
    }
    offset += field.count * sizeOf(field.type) * points;
  }
  return layout;
}

Points readBinary(const PcdHeader& header, const Axes& axes, std::span<const std::byte> bytes,
                  std::size_t begin, FrameMemory& memory) {
  if (header.points > (bytes.size() - begin) / header.pointSize()) {
    refuseShort(header, begin, bytes.size());
  }
  return memory.points.view(bytes.data() + begin, static_cast<std::size_t>(header.points),
                            layoutOf(header, axes, 1));
}

// Some writers store a block without compression if it does not shrink.
bool isStored(std::span<const std::byte> block, std::size_t size) {
  return block.size() == size;
}

Points readCompressed(const PcdHeader& header, const Axes& axes, std::span<const std::byte> bytes,
                      std::size_t begin, FrameMemory& memory) {
  constexpr std::size_t sizes = 8;
  if (bytes.size() - begin < sizes) {
    throw ReadError(atByte(bytes.size()), "the file ends before its compressed points");
  }
  const auto compressed = loadLittleEndian<std::uint32_t>(bytes.data() + begin);
  const auto size = loadLittleEndian<std::uint32_t>(bytes.data() + begin + 4);
  const std::size_t left = bytes.size() - begin - sizes;
  if (compressed > left) {
    throw ReadError(atByte(bytes.size()), "the file ends " + std::to_string(compressed - left) +
                                              " bytes before the end of its compressed block of " +
                                              std::to_string(compressed));
  }
  if (header.points > size / header.pointSize() || header.points * header.pointSize() != size) {
    throw ReadError(atByte(begin + 4), "the compressed block of " + std::to_string(size) +
                                           " bytes does not hold the " + std::to_string(header.points) +
                                           " points of its header, each of " +
                                           std::to_string(header.pointSize()) + " bytes");
  }
  constexpr std::uint64_t bestRatio = 88;  // three bytes become at most 264
  if (size / bestRatio > compressed) {
    throw ReadError(atByte(begin), "a compressed block of " + std::to_string(compressed) +
                                       " bytes cannot hold " + std::to_string(size));
  }
  const std::span<const std::byte> block = bytes.subspan(begin + sizes, compressed);
  memory.bytes.resize(size);
  const std::byte* columns = memory.bytes.data();
  if (const auto fault = decompressLzf(block, memory.bytes)) {
    if (!isStored(block, size)) {
      throw ReadError(atByte(begin + sizes + *fault), "the compressed block is damaged");
    }
    columns = block.data();
  }
  const auto points = static_cast<std::size_t>(header.points);
  return memory.points.viewColumns(columns, points, layoutOf(header, axes, points));
}

Points readAscii(const PcdHeader& header, const Axes& axes, LineCursor& lines, FrameMemory& memory) {
  RowLayout layout;
  layout.columns = header.columns();
  std::uint64_t column = 0;
  for (std::size_t i = 0; i < header.fields.size(); ++i) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (axes[axis] == i) {
        layout.axes[axis] = column;
      }
    }
    column += header.fields[i].count;
  }
  return readDeclaredRows(lines, layout, header.points, areFloats(header.fields, axes), memory);
}

}  // namespace

Frame readPcd(std::span<const std::byte> bytes, FrameMemory& memory, const AxisNames& axisNames) {
  LineCursor lines(textOf(bytes));
  PcdHeader header = readPcdHeader(lines);
  const Axes axes = coordinateColumns(header.fields, atLine(header.fieldsLine), axisNames);
  Points points;
  if (header.points != 0) {
    switch (header.data) {
      case PcdData::Ascii:
        points = readAscii(header, axes, lines, memory);
        break;
      case PcdData::Binary:
        points = readBinary(header, axes, bytes, lines.end(), memory);
        break;
      case PcdData::Compressed:
        points = readCompressed(header, axes, bytes, lines.end(), memory);
        break;
    }
  }
  return {points, std::move(header.fields)};
}

}  // namespace orvantis::toolkit
