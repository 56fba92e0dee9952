#pragma once

#include "drawing/SvgElement.h"
#include "drawing/Viewport.h"

namespace orvantis::toolkit {

/// Lines at round metres behind the plan, with their numbers along its left and lower side.
SvgElement planGrid(const Viewport& view);

}  // namespace orvantis::toolkit
