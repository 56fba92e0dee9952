#include "TableFiles.h"

#include <system_error>
#include <utility>

#include "Console.h"
#include "recording/TimeLine.h"

namespace orvantis::app {
namespace {

std::filesystem::path made(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) {
    throw Failure(folder, "cannot be made: " + error.message());
  }
  return folder;
}

}  // namespace

TableFiles::TableFiles(const std::string& folder, SessionTables tables)
    : folder_(made(folder)),
      tables_(std::move(tables)),
      events_((folder_ / "events.csv").string()),
      frames_((folder_ / "frames.csv").string()) {
  events_.append(tables_.eventHeader());
  frames_.append(tables_.frameHeader());
}

void TableFiles::add(const Moment& moment, const SessionFrame& frame) {
  events_.append(tables_.eventRows(frame));
  frames_.append(tables_.frameRow(frame, moment.frame ? moment.frame->file : std::string()));
}

void TableFiles::finish(const SessionResult& result) {
  events_.commit();
  frames_.commit();
  writeWhole((folder_ / "zones.csv").string(),
             tables_.zoneTable(result.summary, result.session, result.inputs));
  writeWhole((folder_ / "lines.csv").string(), tables_.lineTable(result.session));
}

}  // namespace orvantis::app
