#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "drawing/LabelPlacer.h"
#include "drawing/SvgElement.h"
#include "drawing/SvgPlan.h"

namespace orvantis::toolkit {

/// The colour of its field; one colour for all exclusion zones.
std::string_view colourOf(const PlanContent::Area& area);

/// The pattern that fills exclusion zones. A picture defines it once.
SvgElement exclusionHatch(const std::string& ids);

/// Gives a shape the fill and border of a zone of that colour, or of an exclusion zone.
void drawAsZone(SvgElement& shape, std::string_view colour);
void drawAsExclusion(SvgElement& shape, const std::string& ids);

/// Zones, and exclusion zones on top of them.
/// @param rings the outlines of the content's areas; empty outlines are not drawn
SvgElement planAreas(const PlanContent& content, const std::vector<PixelRing>& rings);

}  // namespace orvantis::toolkit
