#pragma once

#include <array>

#include "recording/FrameMemory.h"
#include "recording/LineCursor.h"
#include "recording/PlyHeader.h"
#include "recording/Points.h"

namespace orvantis::toolkit {

// The elements of a PLY file in text form, which have one line each. Both functions throw ReadError.

void skipPlyText(const PlyElement& element, LineCursor& lines);

/// @param axes the properties that are x, y and z
/// @param isFloat whether they are read as float, else as double
Points readPlyText(const PlyElement& vertex, const std::array<std::size_t, 3>& axes, bool isFloat,
                   LineCursor& lines, FrameMemory& memory);

}  // namespace orvantis::toolkit
