#pragma once

#include <string>
#include <vector>

#include "session/Session.h"
#include "text/Record.h"

namespace orvantis::toolkit {

/// "left" or "right".
const char* sideName(filter::detection::CounterLineDirectionType side);

/// The values of an event with the keys that docs/command.md describes. Every output about an event is made
/// from this.
Record recordOf(filter::monitor::Stamp stamp, const Event& event);

/// The event as a sentence, without a line end.
std::string toLine(filter::monitor::Stamp stamp, const Event& event);

/// The columns of events in tables.
const std::vector<std::string>& eventColumns();

}  // namespace orvantis::toolkit
