#include "SummaryText.h"

#include <utility>

#include "Console.h"
#include "session/ZoneCells.h"
#include "text/StampText.h"
#include "text/Table.h"

namespace orvantis::app {
namespace {

using filter::monitor::CrossingCounts;
using filter::monitor::Duration;
using filter::monitor::LineTally;

std::string textOf(const std::optional<Duration>& time) {
  return time ? toMilliseconds(*time) : "";
}

void addRow(const std::string& line, const std::string& className, const CrossingCounts& counts,
            Table& table) {
  const std::int64_t net = netToLeft(counts);
  table.addRow({line, className, std::to_string(counts.toLeft), std::to_string(counts.toRight),
                (net > 0 ? "+" : "") + std::to_string(net)});
}

}  // namespace

void printSummary(const SessionSummary& summary, const Session& session, const std::vector<FieldZone>& zones,
                  const SessionInputs& inputs, const Console& console) {
  std::vector<std::string> headings = {"FIELD", "ZONE"};
  if (inputs.points) {
    headings.insert(headings.end(), {">OCCUPIED s", ">TIMES", ">PEAK POINTS"});
  }
  if (inputs.objects) {
    headings.insert(headings.end(), {">PEAK OBJECTS", ">VISITS", ">MEDIAN DWELL s", ">LONGEST s"});
  }
  Table zoneTable(headings);
  ZoneCells cells;
  for (const FieldZone& zone : zones) {
    const ZoneSummary zoneSummary = summary.of(zone, session.objects());
    std::vector<std::string> row = cells.next(zone);
    if (inputs.points) {
      row.insert(row.end(), {toMilliseconds(zoneSummary.occupied), std::to_string(zoneSummary.activations),
                             std::to_string(zoneSummary.peakPoints)});
    }
    if (inputs.objects) {
      row.insert(row.end(), {std::to_string(zoneSummary.peakObjects), std::to_string(zoneSummary.visits),
                             textOf(zoneSummary.medianDwell), textOf(zoneSummary.longestDwell)});
    }
    zoneTable.addRow(std::move(row));
  }
  console.out << '\n';
  console.out << zoneTable.text(console.colour);
  if (!session.sensorZoneNames().empty()) {
    Table sensorZones({"SENSOR ZONE", ">OCCUPIED s", ">TIMES", ">PEAK POINTS"});
    for (std::size_t i = 0; i < session.sensorZoneNames().size(); ++i) {
      const ZoneSummary& of = summary.ofSensorZone(i);
      sensorZones.addRow({std::to_string(i) + " " + session.sensorZoneNames()[i], toMilliseconds(of.occupied),
                          std::to_string(of.activations), std::to_string(of.peakPoints)});
    }
    console.out << '\n';
    console.out << sensorZones.text(console.colour);
  }
  if (!inputs.objects) {
    return;
  }
  Table lineTable({"COUNTER LINE", "CLASS", ">TO LEFT", ">TO RIGHT", ">NET TO LEFT"});
  for (const LineTally& tally : session.lines().tallies()) {
    addRow(tally.line, "all", tally.crossings, lineTable);
    for (const auto& [name, counts] : tally.byClass) {
      addRow("", name.empty() ? "not classified" : name, counts, lineTable);
    }
  }
  console.out << '\n';
  console.out << lineTable.text(console.colour);
}

}  // namespace orvantis::app
