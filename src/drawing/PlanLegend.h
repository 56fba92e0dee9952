#pragma once

#include "drawing/PlanTracks.h"
#include "drawing/SvgElement.h"
#include "drawing/Viewport.h"

namespace orvantis::toolkit {

/// A legend beside a plan, with only the signs that the plan has.
struct PlanLegend {
  SvgElement body;
  double bottom;  ///< in pixels
};

/// @param tracks the tracks of the content
PlanLegend planLegend(const PlanContent& content, const Viewport& view, const PlanTracks& tracks);

}  // namespace orvantis::toolkit
