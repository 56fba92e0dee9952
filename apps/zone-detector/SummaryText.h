#pragma once

#include <vector>

#include "FieldZones.h"
#include "Session.h"
#include "SessionSummary.h"

namespace orvantis::app {

struct Console;

/// Which kinds of input a session has; what a kind gives is left out without it.
struct SessionInputs {
  bool points = false;
  bool objects = false;
};

/// Zones and lines as tables.
void printSummary(const SessionSummary& summary, const Session& session, const std::vector<FieldZone>& zones,
                  const SessionInputs& inputs, const Console& console);

/// The same as JSON objects, one a line, with the keys that docs/command.md describes.
void printJsonSummary(const SessionSummary& summary, const Session& session,
                      const std::vector<FieldZone>& zones, const SessionInputs& inputs,
                      const Console& console);

}  // namespace orvantis::app
