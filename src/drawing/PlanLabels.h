#pragma once

#include <vector>

#include "drawing/LabelPlacer.h"
#include "drawing/SvgElement.h"
#include "drawing/Viewport.h"

namespace orvantis::toolkit {

/// The names of zones and lines, each inside or near what it names. A name for which there is no room is left
/// out.
/// @param rings the outlines of the content's areas
/// @param placer knows what names must not cover; the places of the names are added to it
SvgElement planLabels(const PlanContent& content, const std::vector<PixelRing>& rings, const Viewport& view,
                      LabelPlacer& placer);

}  // namespace orvantis::toolkit
