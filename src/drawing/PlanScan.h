#pragma once

#include <vector>

#include "drawing/SvgElement.h"
#include "drawing/Viewport.h"

namespace orvantis::toolkit {

/// The height of most dots, in steps of 0.1 m; 0 without dots.
double groundOf(const std::vector<PlanContent::Dot>& dots);

/// The dots that do not count in a zone, shaded by their height above the ground and by their density: the
/// ground is pale, and walls, cars and people are dark.
SvgElement planScan(const std::vector<PlanContent::Dot>& dots, const Viewport& view);

/// The dots that count in a zone.
SvgElement countedDots(const std::vector<PlanContent::Dot>& dots, const Viewport& view);

}  // namespace orvantis::toolkit
