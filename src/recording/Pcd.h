#pragma once

#include <span>

#include "recording/Frame.h"
#include "recording/FrameMemory.h"

namespace orvantis::toolkit {

/// Reads a PCD file of version 0.5 to 0.7: ascii, binary or binary_compressed, with x, y and z of any type,
/// in any order. Bytes after the last point are allowed, and so is a frame without points.
/// @param axisNames the columns that are read as coordinates
/// @throws ReadError
Frame readPcd(std::span<const std::byte> bytes, FrameMemory& memory,
              const AxisNames& axisNames = coordinateNames);

}  // namespace orvantis::toolkit
