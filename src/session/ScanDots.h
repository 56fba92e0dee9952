#pragma once

#include <filter/classify/Points.h>
#include <filter/detection/ZoneDetector.h>

#include "drawing/SvgPlan.h"

namespace orvantis::toolkit {

/// Adds a dot to the plan for each point that is finite; those that count in a zone are told.
/// @throws std::invalid_argument for a detector with more than 32 exclusion zones
void addScan(const filter::detection::ZoneDetector& detector, const filter::classify::Points& points,
             PlanContent& plan);

}  // namespace orvantis::toolkit
