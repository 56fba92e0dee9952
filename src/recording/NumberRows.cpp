#include "recording/NumberRows.h"

#include <algorithm>
#include <string>

#include "recording/Decimal.h"
#include "recording/FieldCursor.h"
#include "recording/Quoted.h"
#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

// Why a row was not read; only then is it worth the time to look again.
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

template <bool areBlanksSeparators, typename Real>
class RowParser {
 public:
  explicit RowParser(const RowLayout& layout) : layout_(layout) {
    std::sort(order_.begin(), order_.end(),
              [&](std::size_t a, std::size_t b) { return layout.axes[a] < layout.axes[b]; });
  }

  // Whether the row is one of these, and nothing else.
  bool parse(std::string_view line, std::array<Real, 3>& point) const {
    FieldCursor<areBlanksSeparators> fields(line, layout_.separator);
    std::uint64_t column = 0;
    bool isThere = true;
    for (const std::size_t axis : order_) {
      for (; column < layout_.axes[axis]; ++column) {
        if (!fields.nextAfter(fields.end())) {
          return false;
        }
      }
      const auto [end, error] = readDecimal(fields.begin(), fields.last(), point[axis]);
      if (error != std::errc() || !fields.mayEndAt(end)) {
        return false;
      }
      ++column;
      isThere = fields.nextAfter(end);
    }
    for (; isThere; ++column) {
      isThere = fields.nextAfter(fields.end());
    }
    return column == layout_.columns;
  }

 private:
  RowLayout layout_;
  std::array<std::size_t, 3> order_ = {0, 1, 2};
};

template <bool areBlanksSeparators, typename Real>
std::uint64_t readRowsParted(LineCursor& lines, const RowLayout& layout, std::uint64_t most, bool hasComments,
                             std::vector<Real>& out) {
  const RowParser<areBlanksSeparators, Real> parser(layout);
  std::array<Real, 3> point{};
  std::uint64_t count = 0;
  while (count < most && lines.next()) {
    if (parser.parse(lines.line(), point)) {
      out.insert(out.end(), point.begin(), point.end());
      ++count;
    } else if (!isSkipped(lines.line(), hasComments)) {
      refuseRow(lines, layout);
    }
  }
  return count;
}

template <typename Real>
Points readDeclared(LineCursor& lines, const RowLayout& layout, std::uint64_t count,
                    std::vector<Real>& rows) {
  // A value takes a digit and what parts it from the next one.
  const std::uint64_t most = (lines.left() + 1) / (2 * layout.columns);
  rows.clear();
  rows.reserve(static_cast<std::size_t>(3 * std::min(count, most)));
  const std::uint64_t found = readRows(lines, layout, count, false, rows);
  if (found != count) {
    throw ReadError(atLine(lines.number()), "the file ends after " + std::to_string(found) + " of the " +
                                                std::to_string(count) + " points of its header");
  }
  return pointsOf(rows);
}

}  // namespace

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
  std::array<Real, 3> point{};
  const bool isRead = layout.separator == ' ' ? RowParser<true, Real>(layout).parse(lines.line(), point)
                                              : RowParser<false, Real>(layout).parse(lines.line(), point);
  if (!isRead) {
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
