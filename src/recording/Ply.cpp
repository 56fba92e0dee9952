#include "recording/Ply.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "recording/CoordinateColumns.h"
#include "recording/LineCursor.h"
#include "recording/PlyHeader.h"
#include "recording/PlyText.h"
#include "recording/PlyWalk.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

using Axes = std::array<std::size_t, 3>;

std::size_t vertexElement(const PlyHeader& header, std::uint64_t lastLine) {
  const auto isVertex = [](const PlyElement& element) { return element.name == "vertex"; };
  const auto found = std::find_if(header.elements.begin(), header.elements.end(), isVertex);
  if (found == header.elements.end()) {
    throw ReadError(atLine(lastLine), "the header has no element \"vertex\"");
  }
  if (const auto other = std::find_if(found + 1, header.elements.end(), isVertex);
      other != header.elements.end()) {
    throw ReadError(atLine(other->line), "the header has two elements \"vertex\"");
  }
  return static_cast<std::size_t>(found - header.elements.begin());
}

std::vector<Column> columnsOf(const PlyElement& element) {
  std::vector<Column> columns;
  for (const PlyProperty& property : element.properties) {
    columns.push_back({property.name, property.type, property.isList ? 0U : 1U});
  }
  return columns;
}

std::array<Coordinate*, 3> coordinatesOf(PointLayout& layout) {
  return {&layout.x, &layout.y, &layout.z};
}

// A view of vertices that all have the same size, without a copy.
Points viewVertices(const PlyElement& vertex, const Axes& axes, PlyWalk& walk, PointLayout layout,
                    const std::byte* begin, FrameMemory& memory) {
  walk.skip(vertex);
  layout.stride = static_cast<std::size_t>(vertex.size());
  for (std::size_t axis = 0; axis < 3; ++axis) {
    std::size_t offset = 0;
    for (std::size_t i = 0; i < axes[axis]; ++i) {
      offset += sizeOf(vertex.properties[i].type);
    }
    *coordinatesOf(layout)[axis] = {offset, vertex.properties[axes[axis]].type};
  }
  return memory.points.view(begin, static_cast<std::size_t>(vertex.count), layout);
}

// Copies the coordinates first, because lists make the vertices different in size.
Points gatherVertices(const PlyElement& vertex, const Axes& axes, PlyWalk& walk, PointLayout layout,
                      FrameMemory& memory) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const NumberType type = vertex.properties[axes[axis]].type;
    *coordinatesOf(layout)[axis] = {layout.stride, type};
    layout.stride += sizeOf(type);
  }
  memory.bytes.clear();
  memory.bytes.reserve(layout.stride * static_cast<std::size_t>(std::min(vertex.count, walk.most(vertex))));
  for (std::uint64_t i = 0; i < vertex.count; ++i) {
    const std::size_t begin = memory.bytes.size();
    memory.bytes.resize(begin + layout.stride);
    for (std::size_t p = 0; p < vertex.properties.size(); ++p) {
      const std::byte* const at = walk.take(vertex, i, vertex.properties[p]);
      for (std::size_t axis = 0; axis < 3; ++axis) {
        if (axes[axis] == p) {
          const Coordinate& coordinate = *coordinatesOf(layout)[axis];
          std::memcpy(memory.bytes.data() + begin + coordinate.offset, at, sizeOf(coordinate.type));
        }
      }
    }
  }
  return memory.points.view(memory.bytes.data(), static_cast<std::size_t>(vertex.count), layout);
}

Points readBinary(const PlyHeader& header, std::size_t vertexNumber, const Axes& axes,
                  std::span<const std::byte> bytes, std::size_t begin, FrameMemory& memory) {
  PointLayout layout;
  layout.isBigEndian = header.format == PlyFormat::BigEndian;
  PlyWalk walk(bytes, begin, layout.isBigEndian);
  for (std::size_t i = 0; i < vertexNumber; ++i) {
    walk.skip(header.elements[i]);
  }
  const PlyElement& vertex = header.elements[vertexNumber];
  return vertex.hasList() ? gatherVertices(vertex, axes, walk, layout, memory)
                          : viewVertices(vertex, axes, walk, layout, bytes.data() + walk.at(), memory);
}

Points readAscii(const PlyHeader& header, std::size_t vertexNumber, const Axes& axes, bool isFloat,
                 LineCursor& lines, FrameMemory& memory) {
  for (std::size_t i = 0; i < vertexNumber; ++i) {
    skipPlyText(header.elements[i], lines);
  }
  return readPlyText(header.elements[vertexNumber], axes, isFloat, lines, memory);
}

}  // namespace

Frame readPly(std::span<const std::byte> bytes, FrameMemory& memory, const AxisNames& axisNames) {
  LineCursor lines(textOf(bytes));
  const PlyHeader header = readPlyHeader(lines);
  const std::size_t vertex = vertexElement(header, lines.number());
  std::vector<Column> columns = columnsOf(header.elements[vertex]);
  const Axes axes = coordinateColumns(columns, atLine(header.elements[vertex].line), axisNames);
  const Points points = header.format == PlyFormat::Ascii
                            ? readAscii(header, vertex, axes, areFloats(columns, axes), lines, memory)
                            : readBinary(header, vertex, axes, bytes, lines.end(), memory);
  return {points, std::move(columns)};
}

}  // namespace orvantis::toolkit
