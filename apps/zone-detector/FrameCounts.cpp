#include "FrameCounts.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <utility>

#include "Console.h"
#include "InputConsole.h"
#include "Progress.h"
#include "RunCommand.h"
#include "document/Configuration.h"
#include "document/FieldZones.h"
#include "input/Interrupt.h"
#include "recording/FrameWarnings.h"
#include "session/HeightWarnings.h"
#include "session/SensorZones.h"
#include "session/ZoneCells.h"
#include "session/ZoneCounter.h"
#include "text/Record.h"
#include "text/StampText.h"
#include "text/Table.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

using filter::classify::PointClassifier;
using filter::classify::ZoneCounts;
using filter::detection::ZoneDetector;
using filter::monitor::PointFrame;
using SensorZones = std::vector<std::shared_ptr<filter::detection::Zone3dTarsel>>;

std::uint64_t countOf(const FieldZone& zone, const ZoneCounts& counts) {
  return counts.inside[static_cast<std::size_t>(PointClassifier::zoneBit(zone.field, zone.zone))];
}

struct CountedFrame {
  std::size_t number;
  const InputFrame& input;
  ZoneCounts counts;
  std::optional<PointFrame> sensorZones;

  std::uint64_t points() const { return sizeOf(input.points) + dropped(); }
  std::uint64_t dropped() const {
    return input.dropped.atOrigin + input.dropped.tooNear + input.dropped.tooFar;
  }
};

void printSensorZones(const PointFrame& frame, const SensorZones& zones, std::uint64_t minPoints,
                      const Console& console) {
  Table table({"SENSOR ZONE", "SENSORS", ">POINTS", "≥ " + std::to_string(minPoints)});
  for (std::size_t i = 0; i < zones.size(); ++i) {
    std::string sensors;
    for (const std::string& name : zones[i]->getSpecificSensors()) {
      sensors += (sensors.empty() ? "" : ", ") + name;
    }
    table.addRow({std::to_string(i) + " " + zones[i]->getName(), sensors.empty() ? "all" : sensors,
                  std::to_string(frame.counts[i]), frame.counts[i] >= minPoints ? "yes" : "no"});
  }
  console.out << table.text(console.colour);
}

void printTable(const CountedFrame& frame, const std::vector<FieldZone>& zones,
                const SensorZones& sensorZones, std::uint64_t minPoints, const Console& console) {
  const std::string topic = frame.input.topic.empty() ? "" : " " + frame.input.topic;
  const std::string at =
      frame.input.stamp ? topic + " at " + toText(*frame.input.stamp) + " s" : std::string();
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
  console.out << table.text(console.colour);
  if (frame.sensorZones) {
    printSensorZones(*frame.sensorZones, sensorZones, minPoints, console);
  }
}

std::vector<Record> recordsOf(const std::vector<SensorFrame>& sensors) {
  std::vector<Record> list;
  for (const SensorFrame& sensor : sensors) {
    Record record = {{"name", "", sensor.sensor}, {"file", "", sensor.file}};
    if (!sensor.topic.empty()) {
      record.push_back({"topic", "", sensor.topic});
    }
    record.push_back({"stamp", "", sensor.stamp});
    record.push_back({"points", "", std::uint64_t{sizeOf(sensor.points)}});
    list.push_back(std::move(record));
  }
  return list;
}

std::vector<Record> recordsOf(const PointFrame& frame, const SensorZones& zones, std::uint64_t minPoints) {
  std::vector<Record> list;
  for (std::size_t i = 0; i < zones.size(); ++i) {
    const std::set<std::string> sensors = zones[i]->getSpecificSensors();
    list.push_back({{"zone", "", std::uint64_t{i}},
                    {"name", "", zones[i]->getName()},
                    {"enabled", "", zones[i]->enabled()},
                    {"sensors", "", std::vector<std::string>(sensors.begin(), sensors.end())},
                    {"points", "", frame.counts[i]},
                    {"reached", "", frame.counts[i] >= minPoints}});
  }
  return list;
}

void printJson(const CountedFrame& frame, const std::vector<FieldZone>& zones, const SensorZones& sensorZones,
               std::uint64_t minPoints, const Console& console) {
  const InputFrame& input = frame.input;
  Record record = {{"frame", "", std::uint64_t{frame.number}}};
  if (input.sensors.empty()) {
    record.push_back({"file", "", input.file});
  }
  if (input.stamp) {
    if (input.sensors.empty()) {
      record.push_back({"topic", "", input.topic});
    }
    record.push_back({"stamp", "", *input.stamp});
  }
  if (!input.sensors.empty()) {
    record.push_back({"sensors", "", recordsOf(input.sensors)});
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
  if (frame.sensorZones) {
    record.push_back({"sensorZones", "", recordsOf(*frame.sensorZones, sensorZones, minPoints)});
  }
  console.out << toJson(record) << '\n';
}

// What all points of a frame are looked at for. A piece of it after the other, so that each is read from the
// memory once.
ZoneCounts lookAt(const InputFrame& frame, const PointClassifier& classifier, HeightWatch& heights,
                  FrameWarnings& warnings) {
  constexpr std::size_t pieceSize = 16384;
  ZoneCounts sum;
  std::uint64_t atOrigin = frame.atOrigin.value_or(0);
  std::visit(
      [&](auto piece) {
        const auto whole = piece;
        for (std::size_t begin = 0; begin < whole.size; begin += pieceSize) {
          const std::size_t offset = begin * whole.stride;
          piece.x = static_cast<const unsigned char*>(whole.x) + offset;
          piece.y = static_cast<const unsigned char*>(whole.y) + offset;
          piece.z = static_cast<const unsigned char*>(whole.z) + offset;
          piece.size = std::min(pieceSize, whole.size - begin);
          const ZoneCounts counts = classifier.count(piece);
          std::transform(sum.inside.begin(), sum.inside.end(), counts.inside.begin(), sum.inside.begin(),
                         std::plus<>());
          sum.excluded += counts.excluded;
          sum.noReturns += counts.noReturns;
          heights.look(piece);
          atOrigin += frame.atOrigin ? 0 : countAtOrigin(piece);
        }
      },
      frame.points);
  heights.sample(frame.points);
  warnings.add(frame, atOrigin);
  return sum;
}

}  // namespace

int countFrames(const Configuration& configuration, const RunOptions& options, const Console& console) {
  const Interrupt interrupt;
  const ZoneDetector& detector = configuration.detector;
  const auto minPoints = static_cast<std::uint64_t>(detector.getMinPoints());
  const PointClassifier classifier(detector);
  const std::vector<FieldZone> zones = zonesOf(detector);
  HeightWatch heights(zones);
  const std::unique_ptr<FrameSource> input =
      openFrames(options.recording, configuration, warningsTo(console));
  auto sensorMonitor = options.recording.sensors.empty() ? std::nullopt : monitorOfSensorZones(configuration);
  FrameWarnings warnings;
  Progress progress(console, input->frameCount());
  std::size_t number = 0;
  while (Interrupt::signal() == 0) {
    const std::optional<InputFrame> frame = input->next();
    if (!frame) {
      break;
    }
    progress.show(number, *input, frame->file);
    ZoneCounts counts = lookAt(*frame, classifier, heights, warnings);
    if (options.reference) {
      counts = countZoneByZone(detector, frame->points);
    }
    std::optional<PointFrame> sensorZones;
    if (sensorMonitor) {
      sensorZones = sensorMonitor->update(*frame->stamp, pointsBySensor(*frame));
    }
    progress.erase();
    (options.json ? printJson : printTable)({number++, *frame, counts, sensorZones}, zones,
                                            configuration.sensorZones, minPoints, console);
    console.flush();
  }
  console.warn(warnings.texts(*input));
  if (Interrupt::signal() == 0) {
    console.warn(warningsOf(heights));
  }
  return exitCodeOf(*input);
}

}  // namespace orvantis::app
