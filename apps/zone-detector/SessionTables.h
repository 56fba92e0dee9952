#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "AtomicFile.h"
#include "FieldZones.h"
#include "Session.h"
#include "SessionSummary.h"
#include "SummaryText.h"

namespace orvantis::app {

/// Writes a session as CSV tables: events.csv, frames.csv, zones.csv and lines.csv, each whole or not at all.
/// The rows go to their files as they come.
class SessionTables {
 public:
  /// @param folder is made if there is none
  /// @throws Failure, as do the others, when something cannot be written
  SessionTables(const std::string& folder, std::vector<FieldZone> zones);

  void add(const SessionFrame& frame);

  /// Once, after the last frame.
  void finish(const SessionSummary& summary, const Session& session, const SessionInputs& inputs);

 private:
  std::string zoneTable(const SessionSummary& summary, const Session& session,
                        const SessionInputs& inputs) const;

  std::filesystem::path folder_;
  std::vector<FieldZone> zones_;
  AtomicFile events_;
  AtomicFile frames_;
};

}  // namespace orvantis::app
