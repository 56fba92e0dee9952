#include "SessionTables.h"

#include <system_error>
#include <utility>

#include "Console.h"
#include "EventText.h"
#include "Stamps.h"
#include "Text.h"

namespace orvantis::app {
namespace {

using filter::monitor::CrossingCounts;
using filter::monitor::Duration;
using filter::monitor::LineTally;
using filter::monitor::PointFrame;
using filter::monitor::zoneSlotIndex;

using Cells = std::vector<std::string>;

// In quotes where a comma, a quote or the end of a line stands in it.
std::string quoted(const std::string& cell) {
  if (cell.find_first_of(",\"\r\n") == std::string::npos) {
    return cell;
  }
  std::string text = "\"";
  for (const char c : cell) {
    text += c == '"' ? "\"\"" : std::string(1, c);
  }
  return text + "\"";
}

std::string row(const Cells& cells) {
  std::string text;
  for (const std::string& cell : cells) {
    text += (&cell == cells.data() ? "" : ",") + quoted(cell);
  }
  return text + "\n";
}

std::string textOf(const std::optional<Duration>& time) {
  return time ? toText(*time) : "";
}

std::filesystem::path made(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) {
    throw Failure(folder + ": cannot be made: " + error.message());
  }
  return folder;
}

std::string lineTable(const std::vector<LineTally>& tallies) {
  std::string text = row({"line", "class", "to_left", "to_right", "net_to_left"});
  const auto add = [&text](const std::string& line, const std::string& className,
                           const CrossingCounts& counts) {
    const auto net = static_cast<std::int64_t>(counts.toLeft) - static_cast<std::int64_t>(counts.toRight);
    text += row({line, className, std::to_string(counts.toLeft), std::to_string(counts.toRight),
                 std::to_string(net)});
  };
  for (const LineTally& tally : tallies) {
    add(tally.line, "*", tally.crossings);
    for (const auto& [name, counts] : tally.byClass) {
      add(tally.line, name, counts);
    }
  }
  return text;
}

}  // namespace

SessionTables::SessionTables(const std::string& folder, std::vector<FieldZone> zones)
    : folder_(made(folder)),
      zones_(std::move(zones)),
      events_((folder_ / "events.csv").string()),
      frames_((folder_ / "frames.csv").string()) {
  events_.append(row(eventColumns()));
  Cells columns = {"stamp",   "cloud",    "points",   "no_returns", "excluded",
                   "objects", "output_0", "output_1", "output_2",   "taken_ms"};
  for (const FieldZone& zone : zones_) {
    const std::string slot = std::to_string(zone.field) + "_" + std::to_string(zone.zone);
    columns.insert(columns.end(), {"points_" + slot, "occupied_" + slot, "objects_" + slot});
  }
  frames_.append(row(columns));
}

void SessionTables::add(const SessionFrame& frame) {
  for (const Event& event : frame.events) {
    events_.append(row(toCells(frame.stamp, event)));
  }
  Cells cells = {toText(frame.stamp), frame.cloud};
  if (frame.points) {
    cells.insert(cells.end(), {std::to_string(frame.pointCount), std::to_string(frame.points->noReturns),
                               std::to_string(frame.points->excluded)});
  } else {
    cells.resize(cells.size() + 3);
  }
  cells.push_back(frame.objects ? std::to_string(frame.objectCount) : "");
  for (std::size_t i = 0; i < 3; ++i) {
    const bool isLow = frame.points && frame.points->outputs[i] == PointFrame::Level::LOW;
    cells.emplace_back(!frame.points ? "" : isLow ? "low" : "high");
  }
  cells.push_back(toFixed(1000.0 * toSeconds(frame.taken), 3));
  for (const FieldZone& zone : zones_) {
    const std::size_t slot = zoneSlotIndex(zone.field, zone.zone);
    cells.push_back(frame.points ? std::to_string(frame.points->counts[slot]) : "");
    cells.emplace_back(!frame.points ? "" : frame.points->isOccupied[slot] ? "1" : "0");
    cells.push_back(frame.objects ? std::to_string(frame.objects->inside[slot]) : "");
  }
  frames_.append(row(cells));
}

std::string SessionTables::zoneTable(const SessionSummary& summary, const Session& session,
                                     const SessionInputs& inputs) const {
  std::string text = row({"field", "field_name", "zone", "zone_name", "occupied", "activations",
                          "peak_points", "peak_objects", "visits", "median_dwell", "longest_dwell"});
  for (const FieldZone& zone : zones_) {
    const ZoneSummary of = summary.of(zone, session.objects());
    Cells cells = {std::to_string(zone.field), zone.fieldName, std::to_string(zone.zone), zone.name()};
    if (inputs.points) {
      cells.insert(cells.end(),
                   {toText(of.occupied), std::to_string(of.activations), std::to_string(of.peakPoints)});
    } else {
      cells.resize(cells.size() + 3);
    }
    if (inputs.objects) {
      cells.insert(cells.end(), {std::to_string(of.peakObjects), std::to_string(of.visits),
                                 textOf(of.medianDwell), textOf(of.longestDwell)});
    } else {
      cells.resize(cells.size() + 4);
    }
    text += row(cells);
  }
  return text;
}

void SessionTables::finish(const SessionSummary& summary, const Session& session,
                           const SessionInputs& inputs) {
  events_.commit();
  frames_.commit();
  writeWhole((folder_ / "zones.csv").string(), zoneTable(summary, session, inputs));
  writeWhole((folder_ / "lines.csv").string(), lineTable(session.lines().tallies()));
}

}  // namespace orvantis::app
