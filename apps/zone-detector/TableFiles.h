#pragma once

#include <filesystem>
#include <string>

#include "SessionOutput.h"
#include "files/AtomicFile.h"
#include "session/SessionTables.h"

namespace orvantis::app {

/// Writes a session as CSV tables: events.csv, frames.csv, zones.csv and lines.csv, each whole or not at all.
/// The rows go to their files as they come.
class TableFiles : public SessionOutput {
 public:
  /// @param folder is made if there is none
  /// @throws Failure, as do the others, when something cannot be written
  TableFiles(const std::string& folder, toolkit::SessionTables tables);

  void add(const Moment& moment, const toolkit::SessionFrame& frame) override;
  void finish(const SessionResult& result) override;

 private:
  std::filesystem::path folder_;
  toolkit::SessionTables tables_;
  toolkit::AtomicFile events_;
  toolkit::AtomicFile frames_;
};

}  // namespace orvantis::app
