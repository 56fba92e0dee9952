#pragma once

#include <vector>

#include "document/FieldZones.h"
#include "session/Session.h"
#include "session/SessionSummary.h"

namespace orvantis::app {

struct Console;

/// Prints zones and lines as tables.
void printSummary(const toolkit::SessionSummary& summary, const toolkit::Session& session,
                  const std::vector<toolkit::FieldZone>& zones, const toolkit::SessionInputs& inputs,
                  const Console& console);

}  // namespace orvantis::app
