#pragma once

#include <span>

#include "recording/ColumnNames.h"
#include "recording/Frame.h"
#include "recording/FrameMemory.h"

namespace orvantis::toolkit {

/// Reads records of little-endian float32 columns. Nothing in the file describes them.
/// @param names the columns; empty: the columns that the values show
/// @param axisNames the columns that are read as coordinates
/// @throws ReadError, also when the values do not show the columns
Frame readRecords(std::span<const std::byte> bytes, const ColumnNames& names, FrameMemory& memory,
                  const AxisNames& axisNames = coordinateNames);

}  // namespace orvantis::toolkit
