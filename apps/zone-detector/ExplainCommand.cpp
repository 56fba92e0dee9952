#include <cmath>
#include <memory>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "CloudReader.h"
#include "Command.h"
#include "Console.h"
#include "DocumentFile.h"
#include "OptionChecks.h"
#include "Progress.h"
#include "RecordingOptions.h"
#include "SessionOptionsParser.h"
#include "Table.h"
#include "TimeLine.h"
#include "ZoneCells.h"
#include "session/EventText.h"
#include "session/Session.h"
#include "text/Number.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

using filter::monitor::Crossing;
using filter::monitor::CrossingExplanation;
using filter::monitor::ExclusionShare;
using filter::monitor::Stamp;
using filter::monitor::ZoneExplanation;

struct ExplainOptions {
  std::string document;
  Recording recording;
  SessionOptions session;
  long double at = 0.0L;              ///< seconds
  std::string line;                   ///< to explain together with the track; empty: none
  std::optional<std::int32_t> track;  ///< given whenever the line is
};

// The last input of each kind up to the wanted stamp.
struct Reached {
  std::optional<Stamp> points;
  std::string file;
  Cloud cloud;
  std::optional<Stamp> objects;
};

Reached runTo(Stamp at, const Recording& recording, Session& session, const Console& console) {
  TimeLine timeLine(recording);
  Progress progress(console, timeLine.cloudCount());
  Reached reached;
  std::size_t done = 0;
  for (auto moment = timeLine.next(); moment && moment->stamp <= at; moment = timeLine.next()) {
    if (moment->cloud) {
      progress.show(done++, *moment->cloud);
      reached.cloud = readCloud(*moment->cloud);
      reached.file = *moment->cloud;
      reached.points = moment->stamp;
    }
    if (moment->objects) {
      reached.objects = moment->stamp;
    }
    const std::optional<Points> points = moment->cloud ? std::optional(viewOf(reached.cloud)) : std::nullopt;
    session.take(moment->stamp, points, moment->objectsOrNull());
  }
  return reached;
}

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

void explainZones(const Configuration& configuration, const Session& session, const Reached& reached,
                  const Console& console) {
  const std::vector<ZoneExplanation> zones = session.explainZones(viewOf(reached.cloud));
  console.out << console.bold(printable(reached.file) + " at " + toText(*reached.points) + " s") << '\n';
  Table table({"FIELD", "ZONE", ">POINTS", "≥ " + std::to_string(configuration.detector.getMinPoints()),
               ">TAKEN", "BY EXCLUSION ZONE", "STATE", "WILL CHANGE"});
  ZoneCells cells;
  for (const ZoneExplanation& zone : zones) {
    std::vector<std::string> row =
        cells.next(zone.slot.field, zone.slot.fieldName, zone.slot.zone, zone.slot.zoneName);
    row.insert(row.end(),
               {std::to_string(zone.counted), zone.isOccupiedNow ? "yes" : "no", std::to_string(zone.taken),
                takers(zone), zone.isOccupied ? "occupied" : "cleared", change(zone)});
    table.addRow(std::move(row));
  }
  table.print(console);
}

void explainCrossing(const std::string& line, std::int32_t track, Stamp stamp, const Session& session,
                     const Console& console) {
  const CrossingExplanation explanation = session.lines().explain(line, track);
  console.out << console.bold("track " + std::to_string(track) + " and line \"" + printable(line) + "\" at " +
                              toText(stamp) + " s")
              << "\n  " << describe(explanation.verdict) << '\n';
  if (explanation.side) {
    console.out << "  last clear of the line on its " << sideName(*explanation.side) << " side\n";
  }
  if (const std::optional<Crossing>& crossing = explanation.lastCrossing) {
    console.out << "  last crossing from " << sideName(crossing->from) << " to " << sideName(crossing->to)
                << ": met the line at " << toMilliseconds(crossing->met) << " s, ("
                << toText(crossing->where.x(), 3) << ", " << toText(crossing->where.y(), 3)
                << "), found clear of it at " << toMilliseconds(crossing->accepted) << " s\n";
  }
}

int explain(const ExplainOptions& options, const Console& console) {
  const Configuration configuration = readConfiguration(options.document);
  if (options.track && !configuration.lines.contains(options.line)) {
    throw Failure(options.document, "has no counter line \"" + printable(options.line) + "\"");
  }
  const Stamp at(std::llround(options.at * 1e9L));
  Session session(configuration, options.session);
  const Reached reached = runTo(at, options.recording, session, console);
  const auto require = [at](bool isThere, const char* what) {
    if (!isThere) {
      throw Failure(std::string("there are no ") + what + " at or before " + toText(at) + " s");
    }
  };
  if (options.recording.hasClouds()) {
    require(reached.points.has_value(), "points");
    explainZones(configuration, session, reached, console);
  }
  if (options.track) {
    require(reached.objects.has_value(), "tracked objects");
    console.out << (options.recording.hasClouds() ? "\n" : "");
    explainCrossing(options.line, *options.track, *reached.objects, session, console);
  }
  console.flush();
  return 0;
}

const CommandText text = {"explain", "say why zones and counter lines are in the state they are in",
                          R"(Examples:
  zone-detector explain site.json frames/*.pcd --at 1.2
  zone-detector explain site.json --tracks tracks.csv --at 1.9 --line Gate --track 7

Runs a recording up to the last frame at or before a stamp. Then says, for each zone, how many points count,
how many an exclusion zone took and which one, and when its state changes; for a line and a track, why the
track did or did not count.)"};

}  // namespace

void addExplainCommand(CLI::App& program, Task& task) {
  const auto options = std::make_shared<ExplainOptions>();
  CLI::App& command = addCommand(program, text);
  command.add_option("FILE", options->document, "zone document; - is the standard input")->required();
  addRecordingOptions(command, options->recording);
  command.add_option("--at", options->at, "stamp in seconds")
      ->option_text("STAMP REQUIRED")
      ->required()
      ->check(between(-9.2e9, 9.2e9));
  CLI::Option* const line = command.add_option("--line", options->line, "counter line")->option_text("NAME");
  CLI::Option* const track =
      command.add_option("--track", options->track, "a track on that line, by its id")->option_text("ID");
  line->needs(track)->needs(command.get_option("--tracks"));
  track->needs(line);
  command.get_option("--tracks")->needs(line);
  addSessionOptions(command, options->session);
  command.final_callback([options, &task] {
    checkRecording(options->recording, options->document);
    task = [options](const Console& console) { return explain(*options, console); };
  });
}

}  // namespace orvantis::app
