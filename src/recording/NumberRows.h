#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "recording/FrameMemory.h"
#include "recording/LineCursor.h"
#include "recording/Points.h"

namespace orvantis::toolkit {

/// Where the rows of a text have their coordinates.
struct RowLayout {
  std::array<std::uint64_t, 3> axes = {0, 1, 2};  ///< the columns of x, y and z, from 0
  std::uint64_t columns = 3;                      ///< of each row
  /// A blank means that any number of blanks and tabs separates the values. Any other separator may have
  /// blanks around it.
  char separator = ' ';
};

/// The most rows that the rest of a text can have: each value takes at least a digit and a separator. Room
/// for that many rows is at most four times the text, and takes no memory until it is used.
std::uint64_t mostRows(const LineCursor& lines, const RowLayout& layout);

/// Reads the rows of numbers in the rest of a text: x, y and z of each. Empty lines are skipped and, with
/// `hasComments`, lines that begin with "#" or "//". The values of other columns are not checked.
/// @param most the most rows that are read
/// @param out the coordinates are appended
/// @return the number of rows
/// @throws ReadError at a row with another number of columns, or with a coordinate that is not a number
template <typename Real>
std::uint64_t readRows(LineCursor& lines, const RowLayout& layout, std::uint64_t most, bool hasComments,
                       std::vector<Real>& out);

extern template std::uint64_t readRows(LineCursor&, const RowLayout&, std::uint64_t, bool,
                                       std::vector<float>&);
extern template std::uint64_t readRows(LineCursor&, const RowLayout&, std::uint64_t, bool,
                                       std::vector<double>&);

/// Reads the row that the cursor is on.
template <typename Real>
void readRow(const LineCursor& lines, const RowLayout& layout, std::vector<Real>& out);

extern template void readRow(const LineCursor&, const RowLayout&, std::vector<float>&);
extern template void readRow(const LineCursor&, const RowLayout&, std::vector<double>&);

/// Reads the `count` rows that a header promises.
/// @param isFloat whether the numbers are read as float, else as double
/// @throws ReadError also when the text ends before
Points readDeclaredRows(LineCursor& lines, const RowLayout& layout, std::uint64_t count, bool isFloat,
                        FrameMemory& memory);

/// Whether a line has only blanks or, with `hasComments`, is a comment.
bool isSkipped(std::string_view line, bool hasComments);

/// A view of the coordinates that `readRows` appended.
template <typename Real>
Points pointsOf(const std::vector<Real>& rows) {
  return filter::classify::PointsView<Real>::interleaved(rows.data(), 3 * sizeof(Real), rows.size() / 3);
}

}  // namespace orvantis::toolkit
