#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "TimeLine.h"

namespace orvantis::app {

struct Console;

struct ExplainOptions {
  std::string document;
  Recording recording;
  long double at = 0.0L;              ///< seconds
  std::string line;                   ///< to explain together with the track; empty: none
  std::optional<std::int32_t> track;  ///< given whenever the line is
};

/// Says why the zones are in the state they are in after the last points at or before a stamp, and why a
/// track did or did not count on a line.
/// @throws Failure also when there is no frame so early, or no such line
int explain(const ExplainOptions& options, const Console& console);

}  // namespace orvantis::app
