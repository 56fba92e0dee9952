#pragma once

#include <vector>

#include "drawing/LabelPlacer.h"
#include "drawing/SvgElement.h"
#include "drawing/Viewport.h"

namespace orvantis::toolkit {

/// The names of zones and lines, each beside or inside its own; one that has room nowhere is left out.
/// @param rings the outlines of the content's areas
/// @param placer knows what is in the way, and learns where the names stand
SvgElement planLabels(const PlanContent& content, const std::vector<PixelRing>& rings, const Viewport& view,
                      LabelPlacer& placer);

}  // namespace orvantis::toolkit
