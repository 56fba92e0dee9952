#pragma once

#include "classify/Block.h"
#include "classify/Grid.h"
#include "classify/Heights.h"
#include "classify/Pending.h"
#include "classify/Places.h"

namespace orvantis::filter::classify {

/// What the masks are for. With Counts, points with a coordinate that is not finite are counted as well.
enum class Purpose { Masks, Counts };

/// Looks up the points of a block: the zones of cell and height become the mask of each point, and the points
/// that the tables do not decide become pending. Uses the best instructions that the processor has.
NoReturns lookUp(const Grid& grid, const Heights& heights, const Block<float>& block, Purpose purpose,
                 Pending& pending);
NoReturns lookUp(const Grid& grid, const Heights& heights, const Block<double>& block, Purpose purpose,
                 Pending& pending);

}  // namespace orvantis::filter::classify
