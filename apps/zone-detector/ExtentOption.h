#pragma once

#include <optional>

#include "drawing/SvgPlan.h"

namespace CLI {
class App;
}

namespace orvantis::app {

/// Adds the option for the part of the plan that a picture shows.
void addExtentOption(CLI::App& command, std::optional<toolkit::PlanContent::Extent>& extent);

}  // namespace orvantis::app
