#pragma once

#include <optional>
#include <string>

#include "drawing/SvgPlan.h"
#include "input/Recording.h"

namespace orvantis::app {

struct Console;

struct PlotOptions {
  std::string document;
  toolkit::Recording recording;  ///< its first frame is drawn, if it has clouds
  std::string output;            ///< empty or "-": the console's data stream
  std::optional<toolkit::PlanContent::Extent> extent;
};

/// Draws the plan of a zone document, over a frame if one is given, as SVG.
int plot(const PlotOptions& options, const Console& console);

}  // namespace orvantis::app
