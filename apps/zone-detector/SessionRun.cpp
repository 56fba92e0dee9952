#include "SessionRun.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CloudReader.h"
#include "Console.h"
#include "HeightWarning.h"
#include "Progress.h"
#include "RunCommand.h"
#include "SummaryText.h"
#include "TableFiles.h"
#include "document/Configuration.h"
#include "document/FieldZones.h"
#include "files/AtomicFile.h"
#include "session/Durations.h"
#include "session/EventText.h"
#include "session/Session.h"
#include "session/SessionPlot.h"
#include "session/SessionSummary.h"
#include "session/SessionTables.h"
#include "session/SummaryJson.h"
#include "text/JsonText.h"
#include "text/Number.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

using filter::monitor::Duration;

void printEvents(const SessionFrame& frame, bool json, const Console& console) {
  for (const Event& event : frame.events) {
    console.out << (json ? toJson(toObject(frame.stamp, event)) : toLine(frame.stamp, event)) << '\n';
  }
  if (!frame.events.empty()) {
    console.flush();
  }
}

// On the error stream: it differs from run to run.
void printTaken(const Durations& taken, const Console& console) {
  if (taken.count() == 0) {
    return;
  }
  const auto milliseconds = [](Duration time) { return toFixed(1000.0 * toSeconds(time), 3) + " ms"; };
  console.err << counted(taken.count(), "frame")
              << ", without reading the files: " << milliseconds(*taken.median()) << " each (median), "
              << milliseconds(*taken.longest()) << " at most\n";
}

void writePicture(SessionPlot& picture, const RunOptions& options) {
  std::string svg;
  try {
    svg = picture.draw(std::filesystem::path(options.document).filename().string());
  } catch (const std::exception& error) {
    throw Failure(options.document, error.what());
  }
  writeWhole(options.picture, svg);
}

}  // namespace

int runSession(const Configuration& configuration, const RunOptions& options, const Console& console) {
  TimeLine timeLine(options.recording);
  Session session(configuration);
  SessionSummary summary;
  const std::vector<FieldZone> zones = zonesOf(configuration.detector);
  HeightWatch heights(zones);
  const SessionInputs inputs{options.recording.hasClouds(), options.recording.hasTracks()};
  auto tables = options.csvFolder.empty()
                    ? std::nullopt
                    : std::optional<TableFiles>(std::in_place, options.csvFolder, SessionTables(zones));
  auto picture = options.picture.empty() ? std::nullopt
                                         : std::optional<SessionPlot>(std::in_place, configuration, inputs);
  Progress progress(console, timeLine.cloudCount());
  while (const std::optional<Moment> moment = timeLine.next()) {
    Cloud cloud;
    std::optional<Points> points;
    if (moment->cloud) {
      progress.show(summary.pointFrames(), *moment->cloud);
      cloud = readCloud(*moment->cloud);
      points = viewOf(cloud);
      heights.add(*points);
    }
    const SessionFrame frame = session.take(moment->stamp, points, moment->objectsOrNull());
    summary.add(frame);
    if (tables) {
      tables->add(frame, moment->cloud.value_or(""));
    }
    if (picture) {
      picture->add(frame, moment->objectsOrNull());
    }
    progress.erase();
    printEvents(frame, options.json, console);
  }
  if (options.json) {
    for (const auto& object : toObjects(summary, session, zones, inputs)) {
      console.out << toJson(object) << '\n';
    }
  } else {
    printSummary(summary, session, zones, inputs, console);
  }
  console.flush();
  printTaken(summary.taken(), console);
  if (inputs.points) {
    warnOfHeights(heights, console);
  }
  if (tables) {
    tables->finish(summary, session, inputs);
  }
  if (picture) {
    writePicture(*picture, options);
  }
  return 0;
}

}  // namespace orvantis::app
