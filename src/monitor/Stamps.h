#pragma once

#include <optional>

#include <filter/monitor/Stamp.h>

namespace orvantis::filter::monitor {

/// The time from one stamp to a later one; the longest duration when it is longer than that.
Duration elapsed(Stamp from, Stamp to);

/// The stamp at a share of the way from one stamp to a later one: 0 is the first, 1 the second.
Stamp between(Stamp from, Stamp to, double share);

/// @throws std::invalid_argument, naming both stamps, unless the stamp is later than the last one
void requireLater(Stamp stamp, const std::optional<Stamp>& last);

}  // namespace orvantis::filter::monitor
