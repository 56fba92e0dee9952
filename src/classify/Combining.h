#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "classify/Grid.h"
#include "classify/Palette.h"

namespace orvantis::filter::classify {

/// The zones on each combination of sides that a cell's decisions tell together.
/// @param decided the zones that hold all of the cell
/// @return nothing when the decisions have more curves than a crossed cell, or one of them none
std::optional<CrossedCell> combined(std::span<const Decision> decisions, std::uint64_t decided,
                                    Palette& palette);

}  // namespace orvantis::filter::classify
