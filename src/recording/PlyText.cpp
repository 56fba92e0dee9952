#include "recording/PlyText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

#include "recording/FieldCursor.h"
#include "recording/NumberRows.h"
#include "recording/Quoted.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

void nextRow(const PlyElement& element, std::uint64_t index, LineCursor& lines) {
  do {
    if (!lines.next()) {
      throw ReadError(atLine(lines.number()), "the file ends after " + std::to_string(index) + " of the " +
                                                  std::to_string(element.count) + " elements " +
                                                  quoted(element.name) + " of its header");
    }
  } while (isSkipped(lines.line(), false));
}

std::uint64_t lengthOf(std::string_view text, const LineCursor& lines) {
  std::uint64_t length = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, length);
  if (end != last || error != std::errc()) {
    throw ReadError(atLine(lines.number(), lines.columnOf(text.data())),
                    "not the length of a list: " + quoted(text));
  }
  return length;
}

// The column at which each property of a row begins and, at the end, the number of columns. Lists make them
// different in each row.
std::vector<std::uint64_t> columnsOf(const PlyElement& element, const LineCursor& lines) {
  std::vector<std::uint64_t> columns;
  std::uint64_t column = 0;
  std::uint64_t listLeft = 0;
  bool isTooLong = false;
  forEachField(lines.line(), ' ', [&](std::string_view field) {
    if (listLeft != 0) {
      --listLeft;
    } else if (columns.size() < element.properties.size()) {
      listLeft = element.properties[columns.size()].isList ? lengthOf(field, lines) : 0;
      columns.push_back(column);
    } else {
      isTooLong = true;
    }
    ++column;
  });
  if (isTooLong || listLeft != 0 || columns.size() != element.properties.size()) {
    throw ReadError(atLine(lines.number()),
                    "the row does not have the values of one element " + quoted(element.name));
  }
  columns.push_back(column);
  return columns;
}

template <typename Real>
Points readWithLists(const PlyElement& vertex, const std::array<std::size_t, 3>& axes, LineCursor& lines,
                     std::vector<Real>& rows) {
  // A value takes at least a digit and a separator, and a list has at least its length.
  const std::uint64_t most = (lines.left() + 1) / (2 * vertex.properties.size());
  rows.clear();
  rows.reserve(static_cast<std::size_t>(3 * std::min(vertex.count, most)));
  for (std::uint64_t i = 0; i < vertex.count; ++i) {
    nextRow(vertex, i, lines);
    const std::vector<std::uint64_t> columns = columnsOf(vertex, lines);
    readRow(lines, {{columns[axes[0]], columns[axes[1]], columns[axes[2]]}, columns.back(), ' '}, rows);
  }
  return pointsOf(rows);
}

}  // namespace

void skipPlyText(const PlyElement& element, LineCursor& lines) {
  if (element.properties.empty()) {
    return;  // elements without properties have no lines
  }
  for (std::uint64_t i = 0; i < element.count; ++i) {
    nextRow(element, i, lines);
    columnsOf(element, lines);
  }
}

Points readPlyText(const PlyElement& vertex, const std::array<std::size_t, 3>& axes, bool isFloat,
                   LineCursor& lines, FrameMemory& memory) {
  if (vertex.hasList()) {
    return isFloat ? readWithLists(vertex, axes, lines, memory.floats)
                   : readWithLists(vertex, axes, lines, memory.doubles);
  }
  const RowLayout layout = {{axes[0], axes[1], axes[2]}, vertex.properties.size(), ' '};
  return readDeclaredRows(lines, layout, vertex.count, isFloat, memory);
}

}  // namespace orvantis::toolkit
