#pragma once

#include "drawing/PlanTracks.h"
#include "drawing/SvgElement.h"
#include "drawing/Viewport.h"

namespace orvantis::toolkit {

/// What the signs of a plan mean, beside it: only those that it has.
struct PlanLegend {
  SvgElement body;
  double bottom;  ///< in pixels
};

/// @param tracks those of the content
PlanLegend planLegend(const PlanContent& content, const Viewport& view, const PlanTracks& tracks);

}  // namespace orvantis::toolkit
