#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "SessionOutput.h"
#include "files/AtomicFile.h"
#include "session/SessionTables.h"

namespace orvantis::app {

/// Writes a session as CSV tables: events.csv, frames.csv, zones.csv and lines.csv, each whole or not at all.
/// Rows are written as they come.
class TableFiles : public SessionOutput {
 public:
  /// @param folder is made if it does not exist
  /// @throws Failure when something cannot be written, as do the other operations
  TableFiles(const std::string& folder, toolkit::SessionTables tables);

  /// The files that are written into a folder.
  static std::vector<std::string> pathsIn(const std::filesystem::path& folder);

  void add(const toolkit::Moment& moment, const toolkit::SessionFrame& frame) override;
  void finish(const SessionResult& result) override;

 private:
  std::filesystem::path folder_;
  toolkit::SessionTables tables_;
  toolkit::AtomicFile events_;
  toolkit::AtomicFile frames_;
};

}  // namespace orvantis::app
