#include "session/ExplanationText.h"

#include <utility>

#include "session/EventText.h"
#include "session/ZoneCells.h"
#include "text/Number.h"
#include "text/StampText.h"
#include "text/Table.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::CounterLineDirectionType;
using filter::monitor::Crossing;
using filter::monitor::ExclusionShare;
using filter::monitor::ZoneExplanation;

using Cells = std::vector<std::string>;

std::string takers(const ZoneExplanation& zone) {
  std::string text;
  for (const ExclusionShare& share : zone.takenBy) {
    text += (text.empty() ? "" : ", ") + share.zoneName + " " + std::to_string(share.points);
  }
  return text;
}

std::string change(const ZoneExplanation& zone) {
  return zone.missing
             ? std::string(zone.isOccupied ? "clears" : "trips") + " in " + toText(*zone.missing) + " s"
             : "";
}

std::string metres(const std::optional<double>& value) {
  return value ? toText(*value, 3) : "";
}

// The columns that both tables of zones have.
Cells headings(int minPoints) {
  return {"FIELD",     "ZONE",
          ">POINTS",   "≥ " + std::to_string(minPoints),
          ">TAKEN",    "BY EXCLUSION ZONE",
          ">BELOW",    ">ABOVE",
          ">FROM z",   ">TO z",
          ">NEAREST m"};
}

Cells cellsOf(const ZoneMoment& moment, ZoneCells& cells) {
  const ZoneExplanation& zone = moment.zone;
  const ZoneReach& reach = moment.reach;
  Cells row = cells.next(zone.slot.field, zone.slot.fieldName, zone.slot.zone, zone.slot.zoneName);
  row.insert(row.end(),
             {std::to_string(zone.counted), zone.isOccupiedNow ? "yes" : "no", std::to_string(zone.taken),
              takers(zone), std::to_string(reach.below), std::to_string(reach.above), metres(reach.lowest),
              metres(reach.highest), reach.nearest ? toText(reach.nearest->distance, 2) : ""});
  return row;
}

Cells joined(Cells first, const Cells& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace

std::string zonesText(const std::vector<ZoneMoment>& moments, int minPoints, bool isColoured) {
  if (moments.empty()) {
    return "";
  }
  Table table(joined(headings(minPoints), {"STATE", "WILL CHANGE"}));
  ZoneCells cells;
  for (const ZoneMoment& moment : moments) {
    table.addRow(joined(cellsOf(moment, cells),
                        {moment.zone.isOccupied ? "occupied" : "cleared", change(moment.zone)}));
  }
  const ZoneMoment& first = moments.front();
  return bold(printable(first.file) + " at " + toText(first.stamp) + " s", isColoured) + "\n" +
         table.text(isColoured);
}

std::string bestFramesText(const std::vector<ZoneMoment>& moments, int minPoints, bool isColoured) {
  Table table(joined(headings(minPoints), {">AT s", "FRAME"}));
  ZoneCells cells;
  for (const ZoneMoment& moment : moments) {
    table.addRow(joined(cellsOf(moment, cells), {toText(moment.stamp), printable(moment.file)}));
  }
  return table.text(isColoured);
}

std::string tracksText(const std::string& line, const std::vector<TrackStory>& stories, bool isColoured) {
  Table table({">TRACK", "CLASS", ">FIRST SEEN s", ">LAST SEEN s", ">COUNTED", ">DECIDED FROM s", ">TO s",
               "VERDICT"});
  for (const TrackStory& story : stories) {
    table.addRow({std::to_string(story.track), printable(story.className), toText(story.firstSeen),
                  toText(story.lastSeen), std::to_string(story.crossings),
                  story.decidedFrom ? toText(*story.decidedFrom) : "", toText(story.decidedAt),
                  describe(story.explanation.verdict)});
  }
  return bold("line \"" + printable(line) + "\": " + counted(stories.size(), "track"), isColoured) + "\n" +
         table.text(isColoured);
}

std::string trackText(const std::string& line, filter::monitor::Stamp stamp, const TrackStory& story,
                      const std::vector<StampedSighting>& sightings, bool isColoured) {
  std::string text = bold("track " + std::to_string(story.track) + " and line \"" + printable(line) +
                              "\" at " + toText(stamp) + " s",
                          isColoured);
  text += "\n  " + std::string(describe(story.explanation.verdict)) + "\n";
  if (story.explanation.side) {
    text += "  last clear of the line on its " + std::string(sideName(*story.explanation.side)) + " side\n";
  }
  if (const std::optional<Crossing>& crossing = story.explanation.lastCrossing) {
    text += "  last crossing from " + std::string(sideName(crossing->from)) + " to " +
            sideName(crossing->to) + ": met the line at " + toMilliseconds(crossing->met) + " s, (" +
            toText(crossing->where.x(), 3) + ", " + toText(crossing->where.y(), 3) +
            "), found clear of it at " + toMilliseconds(crossing->accepted) + " s\n";
  }
  if (sightings.empty()) {
    return text;
  }
  Table table({">SEEN AT s", "SIDE", "CLEAR", ">OFF THE LINE m", ">x", ">y"});
  for (const StampedSighting& sighting : sightings) {
    if (const auto& beside = sighting.beside) {
      const bool isOn = beside->side == CounterLineDirectionType::ON;
      table.addRow({toText(sighting.stamp), isOn ? "on" : sideName(beside->side),
                    beside->isClear ? "yes" : "no", toFixed(beside->distance, 3),
                    toText(beside->reference.x(), 3), toText(beside->reference.y(), 3)});
    } else {
      table.addRow({toText(sighting.stamp), "not placed", "", "", "", ""});
    }
  }
  return text + "\n" + table.text(isColoured);
}

}  // namespace orvantis::toolkit
