#pragma once

#include "drawing/SvgElement.h"
#include "drawing/Viewport.h"

namespace orvantis::toolkit {

/// Lines at round numbers of metres behind the plan, with the numbers along its left and lower side.
SvgElement planGrid(const Viewport& view);

}  // namespace orvantis::toolkit
