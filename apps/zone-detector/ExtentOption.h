#pragma once

#include <optional>

#include "drawing/SvgPlan.h"

namespace CLI {
class App;
}

namespace orvantis::app {

/// Adds the option that says what part of the plane a picture shows.
void addExtentOption(CLI::App& command, std::optional<toolkit::PlanContent::Extent>& extent);

}  // namespace orvantis::app
