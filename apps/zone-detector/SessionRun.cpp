#include "SessionRun.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Console.h"
#include "EventLines.h"
#include "InputConsole.h"
#include "OutputChecks.h"
#include "PictureFile.h"
#include "Progress.h"
#include "RunCommand.h"
#include "TableFiles.h"
#include "document/FieldZones.h"
#include "input/Interrupt.h"
#include "recording/FrameWarnings.h"
#include "session/Durations.h"
#include "session/HeightWarnings.h"
#include "session/Session.h"
#include "session/SessionSummary.h"
#include "text/Number.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

using filter::monitor::Duration;

// On the error stream, because it differs from run to run.
void printTaken(const Durations& taken, const Console& console) {
  if (taken.count() == 0 || console.quiet) {
    return;
  }
  const auto milliseconds = [](Duration time) { return toFixed(1000.0 * toSeconds(time), 3) + " ms"; };
  console.err << counted(taken.count(), "frame")
              << ", without reading the files: " << milliseconds(*taken.median()) << " each (median), "
              << milliseconds(*taken.longest()) << " at most\n";
}

std::vector<std::unique_ptr<SessionOutput>> outputsOf(const RunOptions& options,
                                                      const Configuration& configuration,
                                                      const Session& session, const SessionInputs& inputs,
                                                      const Console& console) {
  std::vector<std::unique_ptr<SessionOutput>> outputs;
  outputs.push_back(std::make_unique<EventLines>(console, options.json));
  if (!options.csvFolder.empty()) {
    outputs.push_back(std::make_unique<TableFiles>(
        options.csvFolder, SessionTables(zonesOf(configuration.detector), session.sensorZoneNames().size())));
  }
  if (!options.picture.empty()) {
    outputs.push_back(std::make_unique<PictureFile>(
        options, SessionPlot(configuration, inputs, options.session.forgetAfter)));
  }
  return outputs;
}

// The next moment; nothing at the end, and nothing after a signal. The signal may cut a row short, so an
// error in it is ignored.
std::optional<Moment> nextOf(TimeLine& timeLine) {
  try {
    auto moment = timeLine.next();
    return Interrupt::signal() == 0 ? std::move(moment) : std::nullopt;
  } catch (const Failure&) {
    if (Interrupt::signal() != 0) {
      return std::nullopt;
    }
    throw;
  }
}

}  // namespace

int runSession(const Configuration& configuration, const RunOptions& options, const Console& console) {
  if (!options.picture.empty()) {
    checkPicture(options.picture, options.document, options.recording);
  }
  const Interrupt interrupt;
  TimeLine timeLine = openTimeLine(options.recording, configuration, warningsTo(console));
  SessionOptions sessionOptions = options.session;
  sessionOptions.followsSensorZones = !options.recording.sensors.empty();
  Session session(configuration, sessionOptions);
  SessionSummary summary;
  const std::vector<FieldZone> zones = zonesOf(configuration.detector);
  const SessionInputs inputs{options.recording.hasClouds(), options.recording.hasTracks()};
  HeightWatch heights(zones);
  FrameWarnings warnings;
  const auto outputs = outputsOf(options, configuration, session, inputs, console);
  Progress progress(console, timeLine.cloudCount());
  while (const std::optional<Moment> moment = nextOf(timeLine)) {
    std::optional<Points> points;
    std::vector<filter::monitor::SensorPoints> sensors;
    if (moment->frame) {
      progress.show(summary.pointFrames(), timeLine.input(), moment->frame->file);
      points = moment->frame->points;
      sensors = pointsBySensor(*moment->frame);
      heights.add(*points);
      warnings.add(*moment->frame);
    }
    const SessionFrame frame = session.take(moment->stamp, points, moment->objectsOrNull(), sensors);
    summary.add(frame);
    if (!frame.events.empty()) {
      progress.erase();
    }
    for (const auto& output : outputs) {
      output->add(*moment, frame);
    }
  }
  progress.erase();
  for (const auto& output : outputs) {
    output->finish({summary, session, zones, inputs});
  }
  printTaken(summary.taken(), console);
  console.warn(warnings.texts(timeLine));
  if (inputs.points && Interrupt::signal() == 0) {
    console.warn(warningsOf(heights));
  }
  return exitCodeOf(timeLine.input());
}

}  // namespace orvantis::app
