#pragma once

#include "session/HeightWatch.h"

namespace orvantis::app {

struct Console;

/// Warns of zones whose heights have no points, or nearly none, between them.
void warnOfHeights(const toolkit::HeightWatch& heights, const Console& console);

}  // namespace orvantis::app
