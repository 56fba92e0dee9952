#pragma once

#include "session/HeightWatch.h"

namespace orvantis::app {

struct Console;

/// Says which zones' heights no point was between.
void warnOfHeights(const toolkit::HeightWatch& heights, const Console& console);

}  // namespace orvantis::app
