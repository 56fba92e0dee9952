#pragma once

#include <optional>
#include <string>

#include "drawing/SvgPlan.h"

namespace orvantis::app {

struct Console;

struct PlotOptions {
  std::string document;
  std::string cloud;   ///< may be empty
  std::string output;  ///< empty or "-": the console's data stream
  std::optional<toolkit::PlanContent::Extent> extent;
};

/// Draws the plan of a zone document, over a scan if one is given, as SVG.
int plot(const PlotOptions& options, const Console& console);

}  // namespace orvantis::app
