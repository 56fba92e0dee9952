#pragma once

#include <vector>

#include "drawing/SvgElement.h"
#include "drawing/Viewport.h"

namespace orvantis::toolkit {

/// The height that most dots are at, in steps of 0.1 m; 0 without dots.
double groundOf(const std::vector<PlanContent::Dot>& dots);

/// The dots that do not count in a zone, shaded by how high they are over the ground and how dense they are:
/// the ground is faint, what stands up is dark, so that walls, cars and people are seen.
SvgElement planScan(const std::vector<PlanContent::Dot>& dots, const Viewport& view);

/// The dots that count in a zone.
SvgElement countedDots(const std::vector<PlanContent::Dot>& dots, const Viewport& view);

}  // namespace orvantis::toolkit
