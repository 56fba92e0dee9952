#pragma once

#include <string>
#include <vector>

#include "FieldZones.h"
#include "Session.h"
#include "SessionSummary.h"
#include "SummaryText.h"

namespace orvantis::app {

/// Collects a session as CSV tables. Memory grows with the frames and events.
class SessionTables {
 public:
  explicit SessionTables(std::vector<FieldZone> zones);

  void add(const SessionFrame& frame);

  /// Writes events.csv, frames.csv, zones.csv and lines.csv, each whole or not at all; makes the folder if
  /// there is none. @throws Failure
  void write(const std::string& folder, const SessionSummary& summary, const Session& session,
             const SessionInputs& inputs) const;

 private:
  std::string zoneTable(const SessionSummary& summary, const Session& session,
                        const SessionInputs& inputs) const;

  std::vector<FieldZone> zones_;
  std::string events_;
  std::string frames_;
};

}  // namespace orvantis::app
