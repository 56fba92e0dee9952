#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "recording/Points.h"

namespace orvantis::toolkit {

/// Of a text or of records. More would be a row that lost its line ends.
constexpr std::size_t mostColumns = 1000;

/// The columns of a file that does not name them itself.
using ColumnNames = std::vector<std::string>;

/// What a user says about them: how many there are, the first three being x, y and z ("4"), a letter for each
/// ("xyzi"), or their names ("t,x,y,z").
/// @throws std::invalid_argument with what is allowed
ColumnNames parseColumnNames(std::string_view text);

/// x, y, z, "column 4", ... @param count at least 3
ColumnNames defaultColumnNames(std::size_t count);

/// Columns of one type with these names.
std::vector<Column> columnsOf(const ColumnNames& names, NumberType type);

}  // namespace orvantis::toolkit
