#pragma once

#include <string>

#include <filter/monitor/Stamp.h>

namespace orvantis::app {

/// Seconds as the double next to them, for numbers in JSON.
double toSeconds(filter::monitor::Duration time);

/// Seconds to the nanosecond, without trailing zeros.
std::string toText(filter::monitor::Duration time);

/// Seconds with three decimals, for columns.
std::string toMilliseconds(filter::monitor::Duration time);

}  // namespace orvantis::app
