#pragma once

#include "classify/Block.h"
#include "classify/Grid.h"
#include "classify/Heights.h"
#include "classify/Pending.h"
#include "classify/Places.h"

namespace orvantis::filter::classify {

/// What the masks are for: with counts, points with a coordinate that is not finite are counted too.
enum class Purpose { Masks, Counts };

/// Looks the points of a block up: their cells' zones and their heights' zones become the masks, and those
/// that the tables do not decide become pending. Runs on the best instructions that the processor has.
NoReturns lookUp(const Grid& grid, const Heights& heights, const Block<float>& block, Purpose purpose,
                 Pending& pending);
NoReturns lookUp(const Grid& grid, const Heights& heights, const Block<double>& block, Purpose purpose,
                 Pending& pending);

}  // namespace orvantis::filter::classify
