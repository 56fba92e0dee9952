#include "FrameCounts.h"

#include <cstdint>
#include <utility>

#include "CloudReader.h"
#include "Console.h"
#include "HeightWarning.h"
#include "InputWarnings.h"
#include "Interrupt.h"
#include "Progress.h"
#include "RunCommand.h"
#include "Table.h"
#include "ZoneCells.h"
#include "document/Configuration.h"
#include "document/FieldZones.h"
#include "session/ZoneCounter.h"
#include "text/Record.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

using filter::classify::PointClassifier;
using filter::classify::ZoneCounts;
using filter::detection::ZoneDetector;

std::uint64_t countOf(const FieldZone& zone, const ZoneCounts& counts) {
  return counts.inside[static_cast<std::size_t>(PointClassifier::zoneBit(zone.field, zone.zone))];
}

struct CountedFrame {
  std::size_t number;
  const InputFrame& input;
  ZoneCounts counts;

  std::uint64_t points() const { return sizeOf(input.points) + dropped(); }
  std::uint64_t dropped() const {
    return input.dropped.atOrigin + input.dropped.tooNear + input.dropped.tooFar;
  }
};

void printTable(const CountedFrame& frame, const std::vector<FieldZone>& zones, std::uint64_t minPoints,
                const Console& console) {
  const std::string at = frame.input.stamp
                             ? " " + frame.input.topic + " at " + toText(*frame.input.stamp) + " s"
                             : std::string();
  const std::string dropped =
      frame.dropped() == 0 ? std::string() : ", " + std::to_string(frame.dropped()) + " dropped";
  console.out << (frame.number == 0 ? "" : "\n")
              << console.bold(printable(frame.input.file + at) + ": " + counted(frame.points(), "point") +
                              ", " + counted(frame.counts.noReturns, "no return") + dropped + ", " +
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

void printJson(const CountedFrame& frame, const std::vector<FieldZone>& zones, std::uint64_t minPoints,
               const Console& console) {
  const InputFrame& input = frame.input;
  Record record = {{"frame", "", std::uint64_t{frame.number}}, {"file", "", input.file}};
  if (input.stamp) {
    record.push_back({"topic", "", input.topic});
    record.push_back({"stamp", "", *input.stamp});
  }
  record.push_back({"points", "", frame.points()});
  record.push_back({"noReturns", "", frame.counts.noReturns});
  if (frame.dropped() > 0) {
    record.push_back({"droppedAtOrigin", "", input.dropped.atOrigin});
    record.push_back({"droppedTooNear", "", input.dropped.tooNear});
    record.push_back({"droppedTooFar", "", input.dropped.tooFar});
  }
  record.push_back({"excluded", "", frame.counts.excluded});
  record.push_back({"minPoints", "", minPoints});
  std::vector<Record> list;
  for (const FieldZone& zone : zones) {
    const std::uint64_t count = countOf(zone, frame.counts);
    list.push_back({{"field", "", std::int64_t{zone.field}},
                    {"fieldName", "", zone.fieldName},
                    {"zone", "", std::int64_t{zone.zone}},
                    {"name", "", zone.name()},
                    {"points", "", count},
                    {"reached", "", count >= minPoints}});
  }
  record.push_back({"zones", "", std::move(list)});
  console.out << toJson(record) << '\n';
}

}  // namespace

int countFrames(const Configuration& configuration, const RunOptions& options, const Console& console) {
  const Interrupt interrupt;
  const ZoneDetector& detector = configuration.detector;
  const auto minPoints = static_cast<std::uint64_t>(detector.getMinPoints());
  const PointClassifier classifier(detector);
  const std::vector<FieldZone> zones = zonesOf(detector);
  HeightWatch heights(zones);
  FrameInput input(filesOf(options.recording.clouds), options.recording.frames);
  InputWarnings warnings;
  Progress progress(console, input.filesLeft());
  std::size_t number = 0;
  while (Interrupt::signal() == 0) {
    const std::optional<InputFrame> frame = input.next();
    if (!frame) {
      break;
    }
    progress.show(number, input, frame->file);
    const ZoneCounts counts =
        options.reference
            ? countZoneByZone(detector, frame->points)
            : std::visit([&](const auto& view) { return classifier.count(view); }, frame->points);
    heights.add(frame->points);
    warnings.add(*frame);
    progress.erase();
    (options.json ? printJson : printTable)({number++, *frame, counts}, zones, minPoints, console);
    console.flush();
  }
  warnings.tell(input, console);
  if (Interrupt::signal() == 0) {
    warnOfHeights(heights, console);
  }
  return exitCodeOf(input);
}

}  // namespace orvantis::app
