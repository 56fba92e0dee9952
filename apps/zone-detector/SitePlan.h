#pragma once

#include "Configuration.h"
#include "SvgPlan.h"

namespace orvantis::app {

/// The zones and counter lines of a document as a plan.
PlanContent planOf(const Configuration& configuration);

}  // namespace orvantis::app
