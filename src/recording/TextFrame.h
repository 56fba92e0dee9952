#pragma once

#include <span>

#include "recording/ColumnNames.h"
#include "recording/Frame.h"
#include "recording/FrameMemory.h"

namespace orvantis::toolkit {

/// Reads a text with a point in each row. Blanks, tabs, commas or semicolons separate the values. Before the
/// rows there may be comments ("#", "//"), the number of points, or a header that names the columns. Without
/// names, x, y and z come first.
/// @param names the columns, instead of those that the file names; empty: the file's
/// @param axisNames the columns that are read as coordinates
/// @throws ReadError
Frame readText(std::span<const std::byte> bytes, const ColumnNames& names, FrameMemory& memory,
               const AxisNames& axisNames = coordinateNames);

}  // namespace orvantis::toolkit
