#pragma once

#include <optional>

#include <filter/monitor/LineCounter.h>
#include <filter/monitor/ObjectMonitor.h>
#include <filter/monitor/Stamp.h>

namespace orvantis::toolkit {

/// How a session follows tracks, and which field drives its outputs.
struct SessionOptions {
  /// Its `forgetAfter` is ignored: the one below holds for zones and lines.
  filter::monitor::LineCounterOptions lines;
  filter::monitor::Duration forgetAfter = filter::monitor::ObjectMonitor::DEFAULT_FORGET_AFTER;
  std::optional<int> activeField;  ///< empty: the detector's evaluation field index
  bool followsSensorZones =
      false;  ///< whether zones bound to sensors are followed; points must then come by sensor
};

}  // namespace orvantis::toolkit
