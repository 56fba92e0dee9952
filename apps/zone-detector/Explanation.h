#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <filter/monitor/Stamp.h>

#include "Recording.h"
#include "session/SessionOptions.h"

namespace orvantis::app {

struct Console;

struct ExplainOptions {
  std::string document;
  Recording recording;
  toolkit::SessionOptions session;
  std::optional<filter::monitor::Stamp> at;  ///< none: the whole recording
  std::string line;                          ///< whose tracks are explained; empty: none
  std::optional<std::int32_t> track;         ///< one of them; none: all
  bool json = false;
};

/// Says why the zones are in the state they are in after the last points at or before a stamp, or which frame
/// of the recording came nearest to occupying each; and why tracks did or did not count on a line.
/// @throws Failure also when there is no frame so early, or no such line
int explain(const ExplainOptions& options, const Console& console);

}  // namespace orvantis::app
