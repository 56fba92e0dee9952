#pragma once

#include <span>

#include "recording/Frame.h"
#include "recording/FrameMemory.h"

namespace orvantis::toolkit {

/// Reads the vertices of a PLY file of version 1.0: ascii or binary in either byte order, with x, y and z of
/// any type among other properties, lists too. Elements before the vertices are skipped; what comes after
/// them is not looked at. A frame without vertices is legal where the header says so.
/// @throws ReadError
Frame readPly(std::span<const std::byte> bytes, FrameMemory& memory);

}  // namespace orvantis::toolkit
