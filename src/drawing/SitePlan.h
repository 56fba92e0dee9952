#pragma once

#include "document/Configuration.h"
#include "drawing/SvgPlan.h"

namespace orvantis::toolkit {

/// The zones and counter lines of a document as a plan.
PlanContent planOf(const Configuration& configuration);

}  // namespace orvantis::toolkit
