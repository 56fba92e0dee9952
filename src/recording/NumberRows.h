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

/// How the rows of a text hold points.
struct RowLayout {
  std::array<std::uint64_t, 3> axes = {0, 1, 2};  ///< the columns of x, y and z, from 0
  std::uint64_t columns = 3;                      ///< of each row
  /// A blank: blanks and tabs in any number part the values. Else one of these, and blanks around it.
  char separator = ' ';
};

/// How many rows there can be at most in what is left of a text: each value takes a digit and what parts it
/// from the next one. Room for so many is never more than four times the text, and takes no memory until it
/// is used.
std::uint64_t mostRows(const LineCursor& lines, const RowLayout& layout);

/// Reads the rows of numbers that a text goes on with: x, y and z of each one after the other. Empty lines
/// are skipped, and with `hasComments` those that begin with "#" or "//". Other columns are not looked at.
/// @param most no more rows than these
/// @param out what was read is appended
/// @return the number of rows
/// @throws ReadError at a row with another number of columns, or where a coordinate is not a number
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

/// Reads `count` rows: a header promised them.
/// @param isFloat whether the numbers are read as float, else as double
/// @throws ReadError also when the text ends before
Points readDeclaredRows(LineCursor& lines, const RowLayout& layout, std::uint64_t count, bool isFloat,
                        FrameMemory& memory);

/// Whether a line holds nothing but blanks, or, with `hasComments`, a comment.
bool isSkipped(std::string_view line, bool hasComments);

/// The rows that `readRows` put one after the other.
template <typename Real>
Points pointsOf(const std::vector<Real>& rows) {
  return filter::classify::PointsView<Real>::interleaved(rows.data(), 3 * sizeof(Real), rows.size() / 3);
}

}  // namespace orvantis::toolkit
