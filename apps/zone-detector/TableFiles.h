#pragma once

#include <filesystem>
#include <string>

#include "SessionOutput.h"
#include "files/AtomicFile.h"
#include "session/SessionTables.h"

namespace orvantis::app {

/// Writes a session as CSV tables: events.csv, frames.csv, zones.csv and lines.csv, each whole or not at all.
/// Rows are written as they come.
class TableFiles : public SessionOutput {
 public:
  /// @param folder is made if it does not exist
  /// @throws Failure when something cannot be written, as do the other operations, and when a file with the
  /// name
  ///   of a table is not one of an earlier session: it may be somebody's frames or tracks
  TableFiles(const std::string& folder, toolkit::SessionTables tables);

  void add(const toolkit::Moment& moment, const toolkit::SessionFrame& frame) override;
  void finish(const SessionResult& result) override;

 private:
  std::filesystem::path folder_;
  toolkit::SessionTables tables_;
  toolkit::AtomicFile events_;
  toolkit::AtomicFile frames_;
};

}  // namespace orvantis::app
