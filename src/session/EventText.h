#pragma once

#include <string>
#include <vector>

#include "session/Session.h"
#include "text/Record.h"

namespace orvantis::toolkit {

/// "left" or "right".
const char* sideName(filter::detection::CounterLineDirectionType side);

/// What an event is, key by key, as docs/command.md describes it. Everything that is written of an event is
/// made from this.
Record recordOf(filter::monitor::Stamp stamp, const Event& event);

/// The event as a line for people, without the end of the line.
std::string toLine(filter::monitor::Stamp stamp, const Event& event);

/// The columns of events in tables.
const std::vector<std::string>& eventColumns();

}  // namespace orvantis::toolkit
