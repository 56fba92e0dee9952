#pragma once

#include <optional>

#include <filter/monitor/LineCounter.h>
#include <filter/monitor/ObjectMonitor.h>
#include <filter/monitor/Stamp.h>

namespace orvantis::toolkit {

/// How a session follows tracks, and which field drives its outputs.
struct SessionOptions {
  /// Its `forgetAfter` is not read: the one below holds for zones and lines alike.
  filter::monitor::LineCounterOptions lines;
  filter::monitor::Duration forgetAfter = filter::monitor::ObjectMonitor::DEFAULT_FORGET_AFTER;
  std::optional<int> activeField;   ///< none: the detector's evaluation field index
  bool followsSensorZones = false;  ///< those that are bound to sensors; the points must come by sensor then
};

}  // namespace orvantis::toolkit
