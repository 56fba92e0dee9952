#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "recording/Points.h"

namespace orvantis::toolkit {

/// The most columns of a text or of records. A row with more has probably lost its line ends.
constexpr std::size_t mostColumns = 1000;

/// The names of the columns of a file.
using ColumnNames = std::vector<std::string>;

/// Reads a user's choice of columns: their number, where the first three are x, y and z ("4"); a letter for
/// each ("xyzi"); or their names ("t,x,y,z").
/// @throws std::invalid_argument that says what is allowed
ColumnNames parseColumnNames(std::string_view text);

/// x, y, z, "column 4", ... @param count at least 3
ColumnNames defaultColumnNames(std::size_t count);

/// Columns of one type with these names.
std::vector<Column> columnsOf(const ColumnNames& names, NumberType type);

}  // namespace orvantis::toolkit
