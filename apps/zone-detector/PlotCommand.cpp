#include "PlotCommand.h"

#include <filesystem>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "Command.h"
#include "Console.h"
#include "DocumentFile.h"
#include "ExtentOption.h"
#include "InputConsole.h"
#include "OutputChecks.h"
#include "RecordingOptions.h"
#include "drawing/SitePlan.h"
#include "files/AtomicFile.h"
#include "input/Input.h"
#include "session/ScanDots.h"

namespace orvantis::app {
namespace {

// Adds the points of the first frame, or of the first frames of all sensors.
void addFirstFrame(const Configuration& configuration, const Recording& recording, const Console& console,
                   PlanContent& plan) {
  const auto input = openFrames(recording, configuration, warningsTo(console));
  const InputFrame frame = input->next().value();  // what has no frame is refused when it is read
  addScan(configuration.detector, frame.points, plan);
  const std::string& source = recording.sensors.empty() ? frame.file : recording.sensors;
  plan.title += " over " + std::filesystem::path(source).filename().string();
}

}  // namespace

int plot(const PlotOptions& options, const Console& console) {
  const bool isToFile = !options.output.empty() && options.output != standardInput;
  if (isToFile) {
    checkPicture(options.output, options.document, options.recording);
  }
  const Configuration configuration = readConfiguration(options.document, console);
  PlanContent plan = planOf(configuration);
  plan.title = std::filesystem::path(options.document).filename().string();
  if (options.recording.hasClouds()) {
    addFirstFrame(configuration, options.recording, console, plan);
  }
  plan.extent = options.extent;
  std::string svg;
  try {
    svg = drawPlan(plan);
  } catch (const std::exception& error) {
    throw Failure(options.document, error.what());
  }
  if (isToFile) {
    writeWhole(options.output, svg);
  } else {
    console.out << svg;
    console.flush();
  }
  return 0;
}

void addPlotCommand(CLI::App& program, Task& task) {
  const auto options = std::make_shared<PlotOptions>();
  CLI::App& command = addCommand(program, {"plot", "draw the plan as SVG", R"(Examples:
  zone-detector plot site.json -o plan.svg
  zone-detector plot site.json scan.pcd -o plan.svg
  zone-detector plot site.json drive.mcap --sensors sensors.json -o plan.svg

Draws zones, exclusion zones and counter lines to scale. With CLOUD they lie over its first frame, with --sensors
over the first frames of all sensors.)"});
  command.add_option("FILE", options->document, "zone document")->required();
  addFrameOptions(command, options->recording);
  command.add_option("-o,--output", options->output, "picture to write; - or none: the standard output");
  addExtentOption(command, options->extent);
  command.final_callback([options, &task] {
    const Recording& recording = options->recording;
    if (recording.clouds.size() > 1 && recording.sensors.empty()) {
      throw CLI::ValidationError("CLOUD", "can be given once, because the plan lies over one frame");
    }
    checkStandardInput(recording, options->document);
    task = [options](const Console& console) { return plot(*options, console); };
  });
}

}  // namespace orvantis::app
