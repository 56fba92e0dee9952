#include "SummaryText.h"

#include <utility>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "Console.h"
#include "JsonText.h"
#include "Stamps.h"
#include "Table.h"
#include "Text.h"

namespace orvantis::app {
namespace {

using boost::json::array;
using boost::json::object;
using boost::json::value;
using filter::monitor::CrossingCounts;
using filter::monitor::Duration;
using filter::monitor::LineTally;

std::string textOf(const std::optional<Duration>& time) {
  return time ? toMilliseconds(*time) : "";
}

value valueOf(const std::optional<Duration>& time) {
  return time ? value(toSeconds(*time)) : value(nullptr);
}

std::int64_t netToLeft(const CrossingCounts& counts) {
  return static_cast<std::int64_t>(counts.toLeft) - static_cast<std::int64_t>(counts.toRight);
}

void addRow(const std::string& line, const std::string& className, const CrossingCounts& counts,
            Table& table) {
  const std::int64_t net = netToLeft(counts);
  table.addRow({line, className, std::to_string(counts.toLeft), std::to_string(counts.toRight),
                (net > 0 ? "+" : "") + std::to_string(net)});
}

object describe(const FieldZone& zone, const ZoneSummary& summary, const SessionInputs& inputs) {
  object result{{"type", "zoneSummary"},
                {"field", zone.field},
                {"fieldName", zone.fieldName},
                {"zone", zone.zone},
                {"name", zone.name()}};
  if (inputs.points) {
    result["occupied"] = toSeconds(summary.occupied);
    result["activations"] = summary.activations;
    result["peakPoints"] = summary.peakPoints;
  }
  if (inputs.objects) {
    result["peakObjects"] = summary.peakObjects;
    result["visits"] = summary.visits;
    result["medianDwell"] = valueOf(summary.medianDwell);
    result["longestDwell"] = valueOf(summary.longestDwell);
  }
  return result;
}

void append(object& target, const CrossingCounts& counts) {
  target["toLeft"] = counts.toLeft;
  target["toRight"] = counts.toRight;
  target["netToLeft"] = netToLeft(counts);
}

object describe(const LineTally& tally) {
  object result{{"type", "lineSummary"}, {"line", tally.line}};
  append(result, tally.crossings);
  array classes;
  for (const auto& [name, counts] : tally.byClass) {
    object entry{{"class", name}};
    append(entry, counts);
    classes.push_back(std::move(entry));
  }
  result["classes"] = std::move(classes);
  return result;
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
  zoneTable.print(console);
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
  lineTable.print(console);
}

void printJsonSummary(const SessionSummary& summary, const Session& session,
                      const std::vector<FieldZone>& zones, const SessionInputs& inputs,
                      const Console& console) {
  for (const FieldZone& zone : zones) {
    console.out << toJson(describe(zone, summary.of(zone, session.objects()), inputs)) << '\n';
  }
  if (inputs.objects) {
    for (const LineTally& tally : session.lines().tallies()) {
      console.out << toJson(describe(tally)) << '\n';
    }
  }
  console.out << toJson(object{{"type", "summary"},
                               {"pointFrames", summary.pointFrames()},
                               {"objectFrames", summary.objectFrames()},
                               {"begin", valueOf(summary.begin())},
                               {"end", valueOf(summary.end())}})
              << '\n';
}

}  // namespace orvantis::app
