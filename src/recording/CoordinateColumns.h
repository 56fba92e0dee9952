#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "recording/Points.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {

/// The columns that are the coordinates, in upper or lower case.
/// @param place where the columns are named, for the error
/// @throws ReadError when one of them is missing, is there twice, or has more than one value
std::array<std::size_t, 3> coordinateColumns(const std::vector<Column>& columns, const Place& place,
                                             const AxisNames& names = coordinateNames);

/// Whether x, y and z are all 4-byte floats, so that a text is read as floats.
bool areFloats(const std::vector<Column>& columns, const std::array<std::size_t, 3>& axes);

}  // namespace orvantis::toolkit
