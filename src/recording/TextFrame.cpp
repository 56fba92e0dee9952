#include "recording/TextFrame.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "recording/CoordinateColumns.h"
#include "recording/FieldCursor.h"
#include "recording/NumberRows.h"
#include "recording/ReadError.h"
#include "text/Decimal.h"
#include "text/LowerCase.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

// What was read before the rows.
struct Start {
  LineCursor rows;  // its next line is the first row
  std::optional<std::uint64_t> count;
  std::uint64_t countLine = 0;
  ColumnNames names;  // empty when the file does not name its columns
  std::uint64_t namesLine = 0;
  std::string_view lastComment;
  char separator = ' ';
};

std::string_view textWithoutMark(std::span<const std::byte> bytes) {
  const std::string_view text = textOf(bytes);
  if (text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF") {
    throw ReadError(atByte(0), "the text is UTF-16; save it as UTF-8");
  }
  return text.substr(0, 3) == "\xEF\xBB\xBF" ? text.substr(3) : text;
}

// @param others the separators that are tried before blanks
char separatorOf(std::string_view line, std::string_view others) {
  for (const char separator : others) {
    if (line.find(separator) != std::string_view::npos) {
      return separator;
    }
  }
  return ' ';
}

bool isNumber(std::string_view text) {
  double value = 0.0;
  const auto [end, error] = readDecimal(text.data(), text.data() + text.size(), value);
  return error != std::errc::invalid_argument && end == text.data() + text.size();
}

std::string unquoted(std::string_view text) {
  const bool isQuoted =
      text.size() >= 2 && text.front() == text.back() && (text[0] == '"' || text[0] == '\'');
  return std::string(isQuoted ? text.substr(1, text.size() - 2) : text);
}

ColumnNames namesIn(std::string_view line, char separator) {
  ColumnNames names;
  for (const std::string_view field : splitRow(line, separator, mostColumns + 1)) {
    names.push_back(unquoted(field));
  }
  return names;
}

std::optional<std::uint64_t> countIn(std::string_view line) {
  const std::vector<std::string_view> fields = splitRow(line, ' ', 2);
  if (fields.size() != 1) {
    return std::nullopt;
  }
  std::uint64_t count = 0;
  const char* const last = fields[0].data() + fields[0].size();
  const auto [end, error] = std::from_chars(fields[0].data(), last, count);
  return end == last && error == std::errc() ? std::optional(count) : std::nullopt;
}

// Finds the next line that is not a comment, and leaves the cursor before it. @return whether there is one
bool findLine(Start& start, std::string_view& line) {
  LineCursor ahead = start.rows;
  while (ahead.next()) {
    line = ahead.line();
    if (!isSkipped(line, true)) {
      return true;
    }
    if (line.find_first_not_of(" \t") != std::string_view::npos) {
      start.lastComment = line;
    }
    start.rows = ahead;
  }
  return false;
}

// A line of words that are not numbers names the columns. Names may have blanks if tabs separate them.
void readNames(Start& start, std::string_view line) {
  start.separator = separatorOf(line, ";,\t");
  const std::vector<std::string_view> fields = splitRow(line, start.separator, mostColumns + 1);
  if (!std::none_of(fields.begin(), fields.end(), isNumber)) {
    start.separator = separatorOf(line, ";,");
    return;
  }
  start.names = namesIn(line, start.separator);
  start.rows.next();
  start.namesLine = start.rows.number();
  if (start.names.size() > mostColumns) {
    throw ReadError(atLine(start.namesLine),
                    "the header has more than " + std::to_string(mostColumns) + " names");
  }
}

Start readStart(std::string_view text) {
  Start start{LineCursor(text), {}, 0, {}, 0, {}, ' '};
  std::string_view line;
  if (!findLine(start, line)) {
    throw ReadError(atLine(std::max<std::uint64_t>(start.rows.number(), 1)), "no line holds a point");
  }
  if ((start.count = countIn(line))) {
    start.rows.next();
    start.countLine = start.rows.number();
    if (!findLine(start, line)) {
      return start;
    }
  }
  readNames(start, line);
  return start;
}

// A comment right before the rows is a header if it has a word for each column and x, y and z are among them.
ColumnNames namesInComment(const Start& start, std::size_t columns) {
  const std::size_t begin = start.lastComment.find_first_not_of("#/ \t");
  if (begin == std::string_view::npos) {
    return {};
  }
  const std::string_view words = start.lastComment.substr(begin);
  ColumnNames names = namesIn(words, separatorOf(words, ";,"));
  for (const char* axis : {"x", "y", "z"}) {
    if (std::count_if(names.begin(), names.end(),
                      [&](const std::string& name) { return lowerCase(name) == axis; }) != 1) {
      return {};
    }
  }
  return names.size() == columns ? names : ColumnNames();
}

ColumnNames namesOf(Start& start) {
  if (!start.names.empty()) {
    return start.names;
  }
  std::string_view line;
  if (!findLine(start, line)) {
    return defaultColumnNames(3);
  }
  const std::size_t columns = splitRow(line, start.separator, mostColumns + 1).size();
  if (columns < 3 || columns > mostColumns) {
    throw ReadError(atLine(start.rows.number() + 1),
                    columns < 3 ? "the row has " + counted(columns, "value") + "; a point needs 3"
                                : "the row has more than " + std::to_string(mostColumns) + " values");
  }
  const ColumnNames names = namesInComment(start, columns);
  return names.empty() ? defaultColumnNames(columns) : names;
}

}  // namespace

Frame readText(std::span<const std::byte> bytes, const ColumnNames& names, FrameMemory& memory,
               const AxisNames& axisNames) {
  const std::string_view text = textWithoutMark(bytes);
  Start start = readStart(text);
  std::vector<Column> columns = columnsOf(names.empty() ? namesOf(start) : names, NumberType::F8);
  const auto axes =
      coordinateColumns(columns, atLine(std::max<std::uint64_t>(start.namesLine, 1)), axisNames);
  const RowLayout layout = {{axes[0], axes[1], axes[2]}, columns.size(), start.separator};
  std::vector<double>& rows = memory.doubles;
  rows.clear();
  rows.reserve(static_cast<std::size_t>(3 * mostRows(start.rows, layout)));
  const std::uint64_t found =
      readRows(start.rows, layout, std::numeric_limits<std::uint64_t>::max(), true, rows);
  if (start.count && *start.count != found) {
    throw ReadError(atLine(start.countLine), "the file says that it has " + std::to_string(*start.count) +
                                                 " points; " + std::to_string(found) + " follow");
  }
  return {pointsOf(rows), std::move(columns)};
}

}  // namespace orvantis::toolkit
