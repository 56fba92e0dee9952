#pragma once

#include <filesystem>
#include <string>

#include "files/AtomicFile.h"
#include "session/SessionTables.h"

namespace orvantis::app {

/// Writes a session as CSV tables: events.csv, frames.csv, zones.csv and lines.csv, each whole or not at all.
/// The rows go to their files as they come.
class TableFiles {
 public:
  /// @param folder is made if there is none
  /// @throws Failure, as do the others, when something cannot be written
  TableFiles(const std::string& folder, toolkit::SessionTables tables);

  void add(const toolkit::SessionFrame& frame, const std::string& file);

  /// Once, after the last frame.
  void finish(const toolkit::SessionSummary& summary, const toolkit::Session& session,
              const toolkit::SessionInputs& inputs);

 private:
  std::filesystem::path folder_;
  toolkit::SessionTables tables_;
  toolkit::AtomicFile events_;
  toolkit::AtomicFile frames_;
};

}  // namespace orvantis::app
