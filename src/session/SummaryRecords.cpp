#include "session/SummaryRecords.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace orvantis::toolkit {
namespace {

using filter::monitor::CrossingCounts;
using filter::monitor::Duration;
using filter::monitor::LineTally;

Value valueOf(const std::optional<Duration>& time) {
  return time ? Value(*time) : Value(nullptr);
}

Record recordOf(const FieldZone& zone, const ZoneSummary& summary, const SessionInputs& inputs) {
  Record record = {{"type", "", "zoneSummary"},
                   {"field", "", std::int64_t{zone.field}},
                   {"fieldName", "", zone.fieldName},
                   {"zone", "", std::int64_t{zone.zone}},
                   {"name", "", zone.name()}};
  if (inputs.points) {
    record.push_back({"occupied", "", summary.occupied});
    record.push_back({"activations", "", summary.activations});
    record.push_back({"peakPoints", "", summary.peakPoints});
  }
  if (inputs.objects) {
    record.push_back({"peakObjects", "", summary.peakObjects});
    record.push_back({"visits", "", summary.visits});
    record.push_back({"medianDwell", "", valueOf(summary.medianDwell)});
    record.push_back({"longestDwell", "", valueOf(summary.longestDwell)});
  }
  return record;
}

void append(Record& record, const CrossingCounts& counts) {
  record.push_back({"toLeft", "", counts.toLeft});
  record.push_back({"toRight", "", counts.toRight});
  record.push_back({"netToLeft", "", netToLeft(counts)});
}

Record recordOf(const LineTally& tally) {
  Record record = {{"type", "", "lineSummary"}, {"line", "", tally.line}};
  append(record, tally.crossings);
  std::vector<Record> classes;
  for (const auto& [name, counts] : tally.byClass) {
    Record entry = {{"class", "", name}};
    append(entry, counts);
    classes.push_back(std::move(entry));
  }
  record.push_back({"classes", "", std::move(classes)});
  return record;
}

}  // namespace

std::vector<Record> recordsOf(const SessionSummary& summary, const Session& session,
                              const std::vector<FieldZone>& zones, const SessionInputs& inputs) {
  std::vector<Record> records;
  records.reserve(zones.size());
  for (const FieldZone& zone : zones) {
    records.push_back(recordOf(zone, summary.of(zone, session.objects()), inputs));
  }
  for (std::size_t i = 0; i < session.sensorZoneNames().size(); ++i) {
    const ZoneSummary& of = summary.ofSensorZone(i);
    records.push_back({{"type", "", "sensorZoneSummary"},
                       {"zone", "", std::uint64_t{i}},
                       {"name", "", session.sensorZoneNames()[i]},
                       {"occupied", "", of.occupied},
                       {"activations", "", of.activations},
                       {"peakPoints", "", of.peakPoints}});
  }
  if (inputs.objects) {
    for (const LineTally& tally : session.lines().tallies()) {
      records.push_back(recordOf(tally));
    }
  }
  records.push_back({{"type", "", "summary"},
                     {"pointFrames", "", summary.pointFrames()},
                     {"objectFrames", "", summary.objectFrames()},
                     {"begin", "", valueOf(summary.begin())},
                     {"end", "", valueOf(summary.end())}});
  return records;
}

}  // namespace orvantis::toolkit
