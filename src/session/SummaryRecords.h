#pragma once

#include <vector>

#include "document/FieldZones.h"
#include "session/Session.h"
#include "session/SessionSummary.h"
#include "text/Record.h"

namespace orvantis::toolkit {

/// The summary of a session, key by key, as docs/command.md describes it: one record for each zone, one for
/// each line, one for all.
std::vector<Record> recordsOf(const SessionSummary& summary, const Session& session,
                              const std::vector<FieldZone>& zones, const SessionInputs& inputs);

}  // namespace orvantis::toolkit
