#include "recording/PlyText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

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

// The column at which each property of a row begins, and at the end the number of columns: lists make it
// another one in each row.
std::vector<std::size_t> columnsOf(const PlyElement& element, const LineCursor& lines) {
  const std::vector<std::string_view> fields = splitRow(lines.line(), ' ');
  std::vector<std::size_t> columns = {0};
  for (const PlyProperty& property : element.properties) {
    std::size_t length = 0;
    if (property.isList && columns.back() < fields.size()) {
      const std::string_view text = fields[columns.back()];
      const char* const last = text.data() + text.size();
      const auto [end, error] = std::from_chars(text.data(), last, length);
      if (end != last || error != std::errc() || length > fields.size()) {
        throw ReadError(atLine(lines.number(), lines.columnOf(text.data())),
                        "not the length of a list in this row: " + quoted(text));
      }
    }
    columns.push_back(columns.back() + 1 + length);
    if (columns.back() > fields.size()) {
      break;
    }
  }
  if (columns.size() != element.properties.size() + 1 || columns.back() != fields.size()) {
    throw ReadError(atLine(lines.number()),
                    "the row does not have the values of one element " + quoted(element.name));
  }
  return columns;
}

template <typename Real>
Points readWithLists(const PlyElement& vertex, const std::array<std::size_t, 3>& axes, LineCursor& lines,
                     std::vector<Real>& rows) {
  // A value takes a digit and what parts it from the next one, and a list has its length at least.
  const std::uint64_t most = (lines.left() + 1) / (2 * vertex.properties.size());
  rows.clear();
  rows.reserve(static_cast<std::size_t>(3 * std::min(vertex.count, most)));
  for (std::uint64_t i = 0; i < vertex.count; ++i) {
    nextRow(vertex, i, lines);
    const std::vector<std::size_t> columns = columnsOf(vertex, lines);
    readRow(lines, {{columns[axes[0]], columns[axes[1]], columns[axes[2]]}, columns.back(), ' '}, rows);
  }
  return pointsOf(rows);
}

}  // namespace

void skipPlyText(const PlyElement& element, LineCursor& lines) {
  if (element.properties.empty()) {
    return;  // such elements have no lines, however many they are
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
