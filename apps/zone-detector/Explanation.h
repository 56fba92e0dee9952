#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <filter/monitor/Stamp.h>

#include "input/Recording.h"
#include "session/SessionOptions.h"

namespace orvantis::app {

struct Console;

struct ExplainOptions {
  std::string document;
  toolkit::Recording recording;
  toolkit::SessionOptions session;
  std::optional<filter::monitor::Stamp> at;  ///< empty: the whole recording
  std::string line;                          ///< the line whose tracks are explained; may be empty
  std::optional<std::int32_t> track;         ///< the one track to explain; empty: all
  bool json = false;
};

/// Prints why the zones are in their states after the last points at or before a stamp or, without a stamp,
/// which frame came nearest to occupying each zone. For a line, prints why tracks did or did not count on it.
/// @throws Failure, also when there is no frame at or before the stamp, or no such line
int explain(const ExplainOptions& options, const Console& console);

}  // namespace orvantis::app
