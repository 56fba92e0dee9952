#pragma once

#include <span>

#include "recording/Frame.h"
#include "recording/FrameMemory.h"

namespace orvantis::toolkit {

/// Reads the vertices of a PLY file of version 1.0: ascii or binary in either byte order, with x, y and z of
/// any type among other properties, also lists. Elements before the vertices are skipped; bytes after them
/// are not read. A frame without vertices is allowed if the header says so.
/// @param axisNames the columns that are read as coordinates
/// @throws ReadError
Frame readPly(std::span<const std::byte> bytes, FrameMemory& memory,
              const AxisNames& axisNames = coordinateNames);

}  // namespace orvantis::toolkit
