#pragma once

#include <array>

#include <filter/detection/Zone.h>

#include "classify/Block.h"
#include "classify/FrozenZones.h"
#include "classify/Grid.h"
#include "classify/Heights.h"
#include "classify/Pending.h"

namespace orvantis::filter::classify {

/// The shapes to ask, by bit; null where there is no zone.
using ShapesByBit = std::array<const detection::Zone*, numBits>;

/// Decides what the tables leave open: takes away the zones that do not hold the pending points. Before,
/// their masks have the zones that may.
void decide(const Grid& grid, const Heights& heights, const ShapesByBit& shapes, const Block<float>& block,
            Pending& pending);
void decide(const Grid& grid, const Heights& heights, const ShapesByBit& shapes, const Block<double>& block,
            Pending& pending);

}  // namespace orvantis::filter::classify
