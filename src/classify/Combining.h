#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "classify/Grid.h"
#include "classify/Palette.h"

namespace orvantis::filter::classify {

/// The zones for each combination of sides, from all decisions of a cell together.
/// @param decided the zones that hold all of the cell
/// @return nothing when the decisions have more curves than a crossed cell can have, or one of them has no
///   curve
std::optional<CrossedCell> combined(std::span<const Decision> decisions, std::uint64_t decided,
                                    Palette& palette);

}  // namespace orvantis::filter::classify
