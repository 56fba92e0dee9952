#include "session/ExplanationRecords.h"

#include <cstdint>
#include <utility>

#include "session/EventText.h"

namespace orvantis::toolkit {
namespace {

using filter::monitor::CrossingVerdict;

template <typename T>
Value orNull(const std::optional<T>& value) {
  return value ? Value(*value) : Value(nullptr);
}

}  // namespace

std::string verdictName(CrossingVerdict verdict) {
  switch (verdict) {
    case CrossingVerdict::NoSuchLine:
      return "noSuchLine";
    case CrossingVerdict::NoLength:
      return "noLength";
    case CrossingVerdict::NoIdentity:
      return "noIdentity";
    case CrossingVerdict::NotSeen:
      return "notSeen";
    case CrossingVerdict::NeverClear:
      return "neverClear";
    case CrossingVerdict::NotOver:
      return "notOver";
    case CrossingVerdict::OnLine:
      return "onLine";
    case CrossingVerdict::TurnedBack:
      return "turnedBack";
    case CrossingVerdict::PassedBeside:
      return "passedBeside";
    case CrossingVerdict::Jumped:
      return "jumped";
    case CrossingVerdict::Counted:
      return "counted";
    case CrossingVerdict::BeganOnLine:
      return "beganOnLine";
  }
  return "";
}

Record recordOf(const ZoneMoment& moment) {
  const filter::monitor::ZoneExplanation& zone = moment.zone;
  std::vector<Record> takers;
  for (const filter::monitor::ExclusionShare& share : zone.takenBy) {
    takers.push_back({{"name", "", share.zoneName}, {"points", "", share.points}});
  }
  Record record = {{"type", "", "zoneExplanation"},
                   {"stamp", "", moment.stamp},
                   {"file", "", moment.file},
                   {"field", "", std::int64_t{zone.slot.field}},
                   {"fieldName", "", zone.slot.fieldName},
                   {"zone", "", std::int64_t{zone.slot.zone}},
                   {"name", "", zone.slot.zoneName},
                   {"points", "", zone.counted},
                   {"minPoints", "", std::int64_t{zone.minPoints}},
                   {"reached", "", zone.isOccupiedNow},
                   {"taken", "", zone.taken},
                   {"takenBy", "", std::move(takers)},
                   {"below", "", moment.reach.below},
                   {"above", "", moment.reach.above},
                   {"lowest", "", orNull(moment.reach.lowest)},
                   {"highest", "", orNull(moment.reach.highest)}};
  if (const std::optional<NearestPoint>& nearest = moment.reach.nearest) {
    record.push_back({"nearest", "", nearest->distance});
    record.push_back({"nearestX", "", nearest->at.x});
    record.push_back({"nearestY", "", nearest->at.y});
    record.push_back({"nearestZ", "", nearest->at.z});
  }
  record.push_back({"state", "", zone.isOccupied ? "occupied" : "cleared"});
  record.push_back({"changesIn", "", orNull(zone.missing)});
  return record;
}

Record recordOf(const std::string& line, const TrackStory& story) {
  Record record = {{"type", "", "trackExplanation"},
                   {"line", "", line},
                   {"track", "", std::int64_t{story.track}},
                   {"class", "", story.className},
                   {"verdict", "", verdictName(story.explanation.verdict)},
                   {"crossings", "", story.crossings},
                   {"firstSeen", "", story.firstSeen},
                   {"lastSeen", "", story.lastSeen},
                   {"decidedFrom", "", orNull(story.decidedFrom)},
                   {"decidedAt", "", story.decidedAt}};
  record.push_back(
      {"side", "",
       story.explanation.side ? Value(std::string(sideName(*story.explanation.side))) : Value(nullptr)});
  return record;
}

Record recordOf(const StampedSighting& sighting) {
  Record record = {{"type", "", "sighting"}, {"stamp", "", sighting.stamp}};
  if (const auto& beside = sighting.beside) {
    const bool isOn = beside->side == filter::detection::CounterLineDirectionType::ON;
    record.push_back({"side", "", isOn ? "on" : sideName(beside->side)});
    record.push_back({"clear", "", beside->isClear});
    record.push_back({"distance", "", beside->distance});
    record.push_back({"x", "", beside->reference.x()});
    record.push_back({"y", "", beside->reference.y()});
  }
  return record;
}

}  // namespace orvantis::toolkit
