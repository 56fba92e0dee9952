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

/// Decides what the tables leave open: removes the zones that do not hold a pending point from its mask,
/// which has all zones that may hold it.
void decide(const Grid& grid, const Heights& heights, const ShapesByBit& shapes, const Block<float>& block,
            Pending& pending);
void decide(const Grid& grid, const Heights& heights, const ShapesByBit& shapes, const Block<double>& block,
            Pending& pending);

}  // namespace orvantis::filter::classify
