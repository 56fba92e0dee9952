#include "recording/NumberRows.h"

#include <algorithm>
#include <string>

#include "recording/FieldCursor.h"
#include "recording/Quoted.h"
#include "recording/ReadError.h"
#include "text/Decimal.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

// Reads a row that was refused again, slowly, to say what is wrong with it.
[[noreturn]] void refuseRow(const LineCursor& lines, const RowLayout& layout) {
  std::uint64_t count = 0;
  std::array<std::string_view, 3> coordinates;
  forEachField(lines.line(), layout.separator, [&](std::string_view field) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (layout.axes[axis] == count) {
        coordinates[axis] = field;
      }
    }
    ++count;
  });
  if (count != layout.columns) {
    throw ReadError(atLine(lines.number()), "the row has " + counted(count, "value") + "; it needs " +
                                                std::to_string(layout.columns));
  }
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const std::string_view text = coordinates[axis];
    double value = 0.0;
    const auto [end, error] = readDecimal(text.data(), text.data() + text.size(), value);
    const bool isNumber = end == text.data() + text.size() && error != std::errc::invalid_argument;
    if (!isNumber || error != std::errc()) {
      throw ReadError(atLine(lines.number(), lines.columnOf(text.data())),
                      std::string(1, "xyz"[axis]) + (isNumber ? " is out of range: " : " is not a number: ") +
                          quoted(text));
    }
  }
  throw ReadError(atLine(lines.number()), "a coordinate is out of the range of a 4-byte float");
}

bool isLineEnd(const char* at, const char* last) {
  return at == last || *at == '\n' || (*at == '\r' && (at + 1 == last || at[1] == '\n'));
}

// The begin of the next line.
const char* behindLineEnd(const char* at, const char* last) {
  at += at != last && *at == '\r' ? 1 : 0;
  return at == last ? at : at + 1;
}

// The axes as their columns stand in a row.
std::array<std::size_t, 3> axesByColumn(const RowLayout& layout) {
  std::array<std::size_t, 3> order = {0, 1, 2};
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return layout.axes[a] < layout.axes[b]; });
  return order;
}

// Reads valid rows, without searching for the end of the line first.
template <bool areBlanksSeparators, typename Real>
class RowParser {
 public:
  explicit RowParser(const RowLayout& layout) : layout_(layout), order_(axesByColumn(layout)) {}

  // Reads the point of the row at `at`. @return the begin of the next line; null when the line is not a row
  const char* parse(const char* at, const char* last, std::array<Real, 3>& point) const {
    at = behindBlanks(at, last);
    std::uint64_t column = 0;
    After after = After::Field;
    for (const std::size_t axis : order_) {
      for (; column < layout_.axes[axis] && after == After::Field; ++column) {
        at = endOfField(at, last);
        after = next(at, last);
      }
      const auto [end, error] = readDecimal(at, last, point[axis]);
      if (error != std::errc() || after != After::Field) {
        return nullptr;
      }
      at = end;
      after = next(at, last);
      ++column;
    }
    for (; after == After::Field; ++column) {
      at = endOfField(at, last);
      after = next(at, last);
    }
    return after == After::Row && column == layout_.columns ? behindLineEnd(at, last) : nullptr;
  }

 private:
  enum class After { Field, Row, Other };

  const char* behindBlanks(const char* at, const char* last) const {
    while (at != last && isBlank(*at) && (areBlanksSeparators || *at != layout_.separator)) {
      ++at;
    }
    return at;
  }
  const char* endOfField(const char* at, const char* last) const {
    while (at != last && *at != '\n' && (areBlanksSeparators ? !isBlank(*at) : *at != layout_.separator)) {
      ++at;
    }
    return at;
  }
  // Goes from the end of a value to the next value, or to the end of the line.
  After next(const char*& at, const char* last) const {
    const char* const end = at;
    at = behindBlanks(at, last);
    if (isLineEnd(at, last)) {
      return After::Row;
    }
    if (areBlanksSeparators) {
      return at == end ? After::Other : After::Field;
    }
    if (*at != layout_.separator) {
      return After::Other;
    }
    at = behindBlanks(at + 1, last);
    return After::Field;
  }

  RowLayout layout_;
  std::array<std::size_t, 3> order_;
};

template <bool areBlanksSeparators, typename Real>
std::uint64_t readRowsParted(LineCursor& lines, const RowLayout& layout, std::uint64_t most, bool hasComments,
                             std::vector<Real>& out) {
  const RowParser<areBlanksSeparators, Real> parser(layout);
  std::array<Real, 3> point{};
  std::uint64_t count = 0;
  while (count < most && lines.left() != 0) {
    if (const char* const next = parser.parse(lines.nextLine(), lines.last(), point)) {
      lines.pass(next);
      for (const Real value : point) {  // a loop over three values is faster than a call that copies them
        out.push_back(value);
      }
      ++count;
    } else if (lines.next() && !isSkipped(lines.line(), hasComments)) {
      refuseRow(lines, layout);
    }
  }
  return count;
}

template <typename Real>
Points readDeclared(LineCursor& lines, const RowLayout& layout, std::uint64_t count,
                    std::vector<Real>& rows) {
  rows.clear();
  rows.reserve(static_cast<std::size_t>(3 * std::min(count, mostRows(lines, layout))));
  const std::uint64_t found = readRows(lines, layout, count, false, rows);
  if (found != count) {
    throw ReadError(atLine(lines.number()), "the file ends after " + std::to_string(found) + " of the " +
                                                std::to_string(count) + " points of its header");
  }
  return pointsOf(rows);
}

}  // namespace

std::uint64_t mostRows(const LineCursor& lines, const RowLayout& layout) {
  return (lines.left() + 1) / (2 * layout.columns);
}

template <typename Real>
std::uint64_t readRows(LineCursor& lines, const RowLayout& layout, std::uint64_t most, bool hasComments,
                       std::vector<Real>& out) {
  return layout.separator == ' ' ? readRowsParted<true>(lines, layout, most, hasComments, out)
                                 : readRowsParted<false>(lines, layout, most, hasComments, out);
}

template std::uint64_t readRows(LineCursor&, const RowLayout&, std::uint64_t, bool, std::vector<float>&);
template std::uint64_t readRows(LineCursor&, const RowLayout&, std::uint64_t, bool, std::vector<double>&);

template <typename Real>
void readRow(const LineCursor& lines, const RowLayout& layout, std::vector<Real>& out) {
  const char* const begin = lines.line().data();
  const char* const last = begin + lines.line().size();
  std::array<Real, 3> point{};
  const char* const end = layout.separator == ' ' ? RowParser<true, Real>(layout).parse(begin, last, point)
                                                  : RowParser<false, Real>(layout).parse(begin, last, point);
  if (end == nullptr) {
    refuseRow(lines, layout);
  }
  out.insert(out.end(), point.begin(), point.end());
}

template void readRow(const LineCursor&, const RowLayout&, std::vector<float>&);
template void readRow(const LineCursor&, const RowLayout&, std::vector<double>&);

Points readDeclaredRows(LineCursor& lines, const RowLayout& layout, std::uint64_t count, bool isFloat,
                        FrameMemory& memory) {
  return isFloat ? readDeclared(lines, layout, count, memory.floats)
                 : readDeclared(lines, layout, count, memory.doubles);
}

bool isSkipped(std::string_view line, bool hasComments) {
  const std::size_t begin = line.find_first_not_of(" \t");
  return begin == std::string_view::npos ||
         (hasComments && (line[begin] == '#' || line.substr(begin, 2) == "//"));
}

}  // namespace orvantis::toolkit
