#include "TableFiles.h"

#include <system_error>
#include <utility>

#include "Console.h"
#include "recording/TimeLine.h"

namespace orvantis::app {
namespace {

constexpr const char* events = "events.csv";
constexpr const char* frames = "frames.csv";
constexpr const char* zones = "zones.csv";
constexpr const char* lines = "lines.csv";

std::filesystem::path made(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) {
    throw Failure(folder, "cannot be made: " + error.message());
  }
  return folder;
}

}  // namespace

std::vector<std::string> TableFiles::pathsIn(const std::filesystem::path& folder) {
  std::vector<std::string> paths;
  for (const char* const name : {events, frames, zones, lines}) {
    paths.push_back((folder / name).string());
  }
  return paths;
}

TableFiles::TableFiles(const std::string& folder, SessionTables tables)
    : folder_(made(folder)),
      tables_(std::move(tables)),
      events_((folder_ / events).string()),
      frames_((folder_ / frames).string()) {
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
  writeWhole((folder_ / zones).string(), tables_.zoneTable(result.summary, result.session, result.inputs));
  writeWhole((folder_ / lines).string(), tables_.lineTable(result.session));
}

}  // namespace orvantis::app
