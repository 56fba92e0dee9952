#pragma once

#include "document/Configuration.h"
#include "drawing/SvgPlan.h"

namespace orvantis::toolkit {

/// The plan of the zones and counter lines of a document.
PlanContent planOf(const Configuration& configuration);

}  // namespace orvantis::toolkit
