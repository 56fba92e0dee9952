#include "SessionRun.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "AtomicFile.h"
#include "Configuration.h"
#include "Console.h"
#include "Durations.h"
#include "EventText.h"
#include "FieldZones.h"
#include "JsonText.h"
#include "Progress.h"
#include "RunCommand.h"
#include "Session.h"
#include "SessionPlot.h"
#include "SessionSummary.h"
#include "SessionTables.h"
#include "Stamps.h"
#include "SummaryText.h"
#include "Text.h"

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
    throw Failure(options.document + ": " + error.what());
  }
  writeWhole(options.picture, svg);
}

}  // namespace

int runSession(const Configuration& configuration, const RunOptions& options, const Console& console) {
  TimeLine timeLine(options.recording);
  Session session(configuration);
  SessionSummary summary;
  std::vector<FieldZone> zones = zonesOf(configuration.detector);
  const SessionInputs inputs{options.recording.hasClouds(), options.recording.hasTracks()};
  auto tables = options.csvFolder.empty()
                    ? std::nullopt
                    : std::optional<SessionTables>(std::in_place, options.csvFolder, zones);
  auto picture = options.picture.empty() ? std::nullopt
                                         : std::optional<SessionPlot>(std::in_place, configuration, inputs);
  Progress progress(console, timeLine.cloudCount());
  while (const std::optional<Moment> moment = timeLine.next()) {
    Cloud cloud;
    if (moment->cloud) {
      progress.show(summary.pointFrames(), *moment->cloud);
      cloud = readCloud(*moment->cloud);
      noteHeights(zones, cloud);
    }
    const SessionFrame frame = session.take(*moment, cloud);
    summary.add(frame);
    if (tables) {
      tables->add(frame);
    }
    if (picture) {
      picture->add(*moment, frame);
    }
    progress.erase();
    printEvents(frame, options.json, console);
  }
  (options.json ? printJsonSummary : printSummary)(summary, session, zones, inputs, console);
  console.flush();
  printTaken(summary.taken(), console);
  if (inputs.points) {
    warnOfHeights(zones, console);
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
