#pragma once

#include <vector>

#include <boost/json/object.hpp>

#include "document/FieldZones.h"
#include "session/Session.h"
#include "session/SessionSummary.h"

namespace orvantis::toolkit {

/// The summary of a session as JSON objects with the keys that docs/command.md describes: one for each zone,
/// one for each line, one for all.
std::vector<boost::json::object> toObjects(const SessionSummary& summary, const Session& session,
                                           const std::vector<FieldZone>& zones, const SessionInputs& inputs);

}  // namespace orvantis::toolkit
