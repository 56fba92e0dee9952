#include "session/SessionTables.h"

#include <cstdint>
#include <optional>

#include "session/EventText.h"
#include "text/Csv.h"
#include "text/Number.h"
#include "text/StampText.h"

namespace orvantis::toolkit {
namespace {

using filter::monitor::CrossingCounts;
using filter::monitor::Duration;
using filter::monitor::LineTally;
using filter::monitor::PointFrame;
using filter::monitor::zoneSlotIndex;

using Cells = std::vector<std::string>;

std::string textOf(const std::optional<Duration>& time) {
  return time ? toText(*time) : "";
}

}  // namespace

std::string SessionTables::eventHeader() const {
  return csvRow(eventColumns());
}

std::string SessionTables::eventRows(const SessionFrame& frame) const {
  std::string rows;
  for (const Event& event : frame.events) {
    rows += toRow(recordOf(frame.stamp, event), eventColumns());
  }
  return rows;
}

std::string SessionTables::frameHeader() const {
  Cells columns = {"stamp",   "cloud",    "points",   "no_returns", "excluded",
                   "objects", "output_0", "output_1", "output_2",   "taken_ms"};
  for (const FieldZone& zone : zones_) {
    const std::string slot = std::to_string(zone.field) + "_" + std::to_string(zone.zone);
    columns.insert(columns.end(), {"points_" + slot, "occupied_" + slot, "objects_" + slot});
  }
  for (std::size_t i = 0; i < numSensorZones_; ++i) {
    const std::string number = "sensor_zone_" + std::to_string(i);
    columns.insert(columns.end(), {"points_" + number, "occupied_" + number});
  }
  return csvRow(columns);
}

std::string SessionTables::frameRow(const SessionFrame& frame, const std::string& file) const {
  Cells cells = {toText(frame.stamp), file};
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
  cells.push_back(tellsTimings_ ? toFixed(1000.0 * toSeconds(frame.taken), 3) : "");
  for (const FieldZone& zone : zones_) {
    const std::size_t slot = zoneSlotIndex(zone.field, zone.zone);
    cells.push_back(frame.points ? std::to_string(frame.points->counts[slot]) : "");
    cells.emplace_back(!frame.points ? "" : frame.points->isOccupied[slot] ? "1" : "0");
    cells.push_back(frame.objects ? std::to_string(frame.objects->inside[slot]) : "");
  }
  for (std::size_t i = 0; i < numSensorZones_; ++i) {
    cells.push_back(frame.sensorZones ? std::to_string(frame.sensorZones->counts[i]) : "");
    cells.emplace_back(!frame.sensorZones ? "" : frame.sensorZones->isOccupied[i] ? "1" : "0");
  }
  return csvRow(cells);
}

std::string SessionTables::zoneTable(const SessionSummary& summary, const Session& session,
                                     const SessionInputs& inputs) const {
  std::string text = csvRow({"field", "field_name", "zone", "zone_name", "occupied", "activations",
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
    text += csvRow(cells);
  }
  for (std::size_t i = 0; i < numSensorZones_; ++i) {
    const ZoneSummary& of = summary.ofSensorZone(i);
    text += csvRow({"", "", std::to_string(i), session.sensorZoneNames()[i], toText(of.occupied),
                    std::to_string(of.activations), std::to_string(of.peakPoints), "", "", "", ""});
  }
  return text;
}

std::string SessionTables::lineTable(const Session& session) const {
  std::string text = csvRow({"line", "class", "to_left", "to_right", "net_to_left"});
  const auto add = [&text](const std::string& line, const std::string& className,
                           const CrossingCounts& counts) {
    text += csvRow({line, className, std::to_string(counts.toLeft), std::to_string(counts.toRight),
                    std::to_string(netToLeft(counts))});
  };
  for (const LineTally& tally : session.lines().tallies()) {
    add(tally.line, "*", tally.crossings);
    for (const auto& [name, counts] : tally.byClass) {
      add(tally.line, name, counts);
    }
  }
  return text;
}

}  // namespace orvantis::toolkit
