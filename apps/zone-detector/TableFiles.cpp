#include "TableFiles.h"

#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "Console.h"
#include "recording/TimeLine.h"

namespace orvantis::app {
namespace {

struct TableName {
  const char* file;
  std::string_view header;  // how such a table begins
};
constexpr TableName events = {"events.csv", "stamp,type,event,"};
constexpr TableName frames = {"frames.csv", "stamp,cloud,"};
constexpr TableName zones = {"zones.csv", "field,field_name,"};
constexpr TableName lines = {"lines.csv", "line,class,"};

void refuseUnlessTable(const std::filesystem::path& folder, const TableName& table) {
  const std::filesystem::path path = folder / table.file;
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error) || std::filesystem::is_empty(path, error)) {
    return;  // nothing that could be lost
  }
  std::string begin(table.header.size(), '\0');
  std::ifstream(path, std::ios::binary).read(begin.data(), static_cast<std::streamsize>(begin.size()));
  if (begin != table.header) {
    throw Failure(path.string(),
                  "cannot be written: it exists, and is not a table of an earlier run; give another folder");
  }
}

std::filesystem::path made(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) {
    throw Failure(folder, "cannot be made: " + error.message());
  }
  for (const TableName& table : {events, frames, zones, lines}) {
    refuseUnlessTable(folder, table);
  }
  return folder;
}

}  // namespace

TableFiles::TableFiles(const std::string& folder, SessionTables tables)
    : folder_(made(folder)),
      tables_(std::move(tables)),
      events_((folder_ / events.file).string()),
      frames_((folder_ / frames.file).string()) {
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
  writeWhole((folder_ / zones.file).string(),
             tables_.zoneTable(result.summary, result.session, result.inputs));
  writeWhole((folder_ / lines.file).string(), tables_.lineTable(result.session));
}

}  // namespace orvantis::app
