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

/// The pattern that fills exclusion zones, to be defined once in a picture.
SvgElement exclusionHatch(const std::string& ids);

/// Fill and border of a zone of this colour, or of an exclusion zone, on any shape.
void drawAsZone(SvgElement& shape, std::string_view colour);
void drawAsExclusion(SvgElement& shape, const std::string& ids);

/// Zones, and over them exclusion zones. @param rings the outlines of the content's areas, empty ones left
/// out
SvgElement planAreas(const PlanContent& content, const std::vector<PixelRing>& rings);

}  // namespace orvantis::toolkit
