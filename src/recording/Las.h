#pragma once

#include <span>

#include "recording/Frame.h"
#include "recording/FrameMemory.h"

namespace orvantis::toolkit {

/// Reads a LAS file of version 1.0 to 1.4 with point format 0 to 10. The coordinates are the file's whole
/// numbers times its scale plus its offset, each rounded to double. Compressed files (LAZ) are refused.
/// @param axes the columns that are read as coordinates
/// @throws ReadError
Frame readLas(std::span<const std::byte> bytes, FrameMemory& memory, const AxisNames& axes = coordinateNames);

}  // namespace orvantis::toolkit
