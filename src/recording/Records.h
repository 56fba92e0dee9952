#pragma once

#include <span>

#include "recording/ColumnNames.h"
#include "recording/Frame.h"
#include "recording/FrameMemory.h"

namespace orvantis::toolkit {

/// Reads records of little-endian float32 columns, which nothing in the file describes.
/// @param names the columns; none: what the values show, and a refusal where they leave it open
/// @throws ReadError
Frame readRecords(std::span<const std::byte> bytes, const ColumnNames& names, FrameMemory& memory);

}  // namespace orvantis::toolkit
