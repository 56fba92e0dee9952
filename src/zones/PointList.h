#pragma once

#include <filter/detection/Point.h>
#include <settings/SettingsManager.h>

namespace orvantis::filter::detection {

/// Writes entry `index` of the list "Point" at the current path.
void savePoint(SettingsManager& settings, int index, const Point& point);

/// Reads entry `index` of the list "Point" at the current path.
Point loadPoint(SettingsManager& settings, int index);

}  // namespace orvantis::filter::detection
