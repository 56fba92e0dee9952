#pragma once

#include <cstddef>

#include "classify/Block.h"
#include "classify/Grid.h"
#include "classify/Heights.h"
#include "classify/Pending.h"

namespace orvantis::filter::classify {

/// Which coordinates are fetched before they are needed. All of them where the masks stay in the cache. Where
/// masks go to memory, frames with much ground take a tenth longer with it.
enum class Fetching { Heights, All };

/// Looks the points of a block up: their cells' zones and their heights' zones become the masks, and those of
/// undecided cells become pending. Runs on the best instructions that the processor has.
/// @return the number of points with a coordinate that is not finite
std::size_t lookUp(const Grid& grid, const Heights& heights, const Block<float>& block, Fetching fetching,
                   Pending& pending);
std::size_t lookUp(const Grid& grid, const Heights& heights, const Block<double>& block, Fetching fetching,
                   Pending& pending);

}  // namespace orvantis::filter::classify
