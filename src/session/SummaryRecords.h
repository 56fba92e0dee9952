#pragma once

#include <vector>

#include "document/FieldZones.h"
#include "session/Session.h"
#include "session/SessionSummary.h"
#include "text/Record.h"

namespace orvantis::toolkit {

/// The summary of a session with the keys that docs/command.md describes: one record for each zone, one for
/// each line and one for the whole session.
std::vector<Record> recordsOf(const SessionSummary& summary, const Session& session,
                              const std::vector<FieldZone>& zones, const SessionInputs& inputs);

}  // namespace orvantis::toolkit
