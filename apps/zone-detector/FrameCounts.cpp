#include "FrameCounts.h"

#include <cstdint>
#include <utility>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "CloudReader.h"
#include "Console.h"
#include "HeightWarning.h"
#include "Interrupt.h"
#include "Progress.h"
#include "RunCommand.h"
#include "Table.h"
#include "ZoneCells.h"
#include "document/Configuration.h"
#include "document/FieldZones.h"
#include "session/ZoneCounter.h"
#include "text/JsonText.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

using filter::classify::PointClassifier;
using filter::classify::ZoneCounts;
using filter::detection::ZoneDetector;

std::uint64_t countOf(const FieldZone& zone, const ZoneCounts& counts) {
  return counts.inside[static_cast<std::size_t>(PointClassifier::zoneBit(zone.field, zone.zone))];
}

struct Frame {
  std::size_t number;
  std::string file;
  std::uint64_t points;
  ZoneCounts counts;
};

void printTable(const Frame& frame, const std::vector<FieldZone>& zones, std::uint64_t minPoints,
                const Console& console) {
  console.out << (frame.number == 0 ? "" : "\n")
              << console.bold(printable(frame.file) + ": " + counted(frame.points, "point") + ", " +
                              counted(frame.counts.noReturns, "no return") + ", " +
                              std::to_string(frame.counts.excluded) + " in exclusion zones")
              << '\n';
  Table table({"FIELD", "ZONE", ">POINTS", "≥ " + std::to_string(minPoints)});
  ZoneCells cells;
  for (const FieldZone& zone : zones) {
    const std::uint64_t count = countOf(zone, frame.counts);
    std::vector<std::string> row = cells.next(zone);
    row.insert(row.end(), {std::to_string(count), count >= minPoints ? "yes" : "no"});
    table.addRow(std::move(row));
  }
  table.print(console);
}

void printJson(const Frame& frame, const std::vector<FieldZone>& zones, std::uint64_t minPoints,
               const Console& console) {
  boost::json::array list;
  for (const FieldZone& zone : zones) {
    const std::uint64_t count = countOf(zone, frame.counts);
    list.push_back(boost::json::object{{"field", zone.field},
                                       {"fieldName", zone.fieldName},
                                       {"zone", zone.zone},
                                       {"name", zone.name()},
                                       {"points", count},
                                       {"reached", count >= minPoints}});
  }
  console.out << toJson(boost::json::object{{"frame", frame.number},
                                            {"file", frame.file},
                                            {"points", frame.points},
                                            {"noReturns", frame.counts.noReturns},
                                            {"excluded", frame.counts.excluded},
                                            {"minPoints", minPoints},
                                            {"zones", std::move(list)}})
              << '\n';
}

}  // namespace

int countFrames(const Configuration& configuration, const RunOptions& options, const Console& console) {
  const Interrupt interrupt;
  const std::vector<std::string>& clouds = options.recording.clouds;
  const ZoneDetector& detector = configuration.detector;
  const auto minPoints = static_cast<std::uint64_t>(detector.getMinPoints());
  const PointClassifier classifier(detector);
  const std::vector<FieldZone> zones = zonesOf(detector);
  HeightWatch heights(zones);
  Progress progress(console, clouds.size());
  for (std::size_t i = 0; i < clouds.size() && Interrupt::signal() == 0; ++i) {
    progress.show(i, clouds[i]);
    const Cloud cloud = readCloud(clouds[i]);
    const Points points = viewOf(cloud);
    const ZoneCounts counts =
        options.reference ? countZoneByZone(detector, points)
                          : std::visit([&](const auto& view) { return classifier.count(view); }, points);
    const Frame frame{i, clouds[i], cloud.size(), counts};
    heights.add(points);
    progress.erase();
    (options.json ? printJson : printTable)(frame, zones, minPoints, console);
    console.flush();
  }
  if (Interrupt::signal() == 0) {
    warnOfHeights(heights, console);
  }
  return Interrupt::exitCode();
}

}  // namespace orvantis::app
