#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Command.h"
#include "Console.h"
#include "InputConsole.h"
#include "RecordingOptions.h"
#include "document/NewDocument.h"
#include "files/AtomicFile.h"
#include "input/FrameInput.h"
#include "session/SiteEstimate.h"

namespace orvantis::app {
namespace {

struct NewOptions {
  std::string output;
  Recording recording;
};

// From the first frame of each file, or from the first frames of all sensors.
SiteEstimate estimateOf(const Recording& recording, const Console& console) {
  SiteEstimate estimate;
  if (!recording.sensors.empty()) {
    const auto input = openFrames(recording, Configuration(), warningsTo(console));
    estimate.add(input->next().value().points);  // what has no frame is refused when it is read
    return estimate;
  }
  for (const std::string& path : filesOf(recording.clouds, recording.frames)) {
    estimate.add(FrameInput({path}, recording.frames).next().value().points);
  }
  return estimate;
}

Site siteOf(const Recording& recording, const Console& console) {
  if (!recording.hasClouds()) {
    return {};
  }
  const auto site = estimateOf(recording, console).site();
  if (!site) {
    throw Failure(recording.sensors.empty() ? recording.clouds.front() : recording.sensors,
                  "has no points to put a zone around");
  }
  return *site;
}

int makeNew(const NewOptions& options, const Console& console) {
  // Never overwrites a file, which may be a document with somebody's zones.
  std::error_code unknown;
  if (!options.output.empty() &&
      std::filesystem::exists(std::filesystem::symlink_status(options.output, unknown))) {
    throw Failure(options.output, "exists already; give another name, or remove it first");
  }
  const std::string text = newDocument(siteOf(options.recording, console));
  if (options.output.empty()) {
    console.out << text;
    console.flush();
  } else {
    writeWhole(options.output, text);
  }
  return 0;
}

}  // namespace

void addNewCommand(CLI::App& program, Task& task) {
  const auto options = std::make_shared<NewOptions>();
  CLI::App& command = addCommand(program, {"new", "write a first zone document", R"(Examples:
  zone-detector new -o site.json
  zone-detector new -o site.json scan.pcd     in the middle of the scan, above its ground

Writes a first zone document: one zone and one counter line. With frames, they lie in the middle of the points,
and the heights of the zone are above the ground, which is the height of most points. Of a recording, its first
frame is taken.)"});
  addFrameOptions(command, options->recording);
  command.add_option("-o,--output", options->output, "document to write; without it, the standard output")
      ->option_text("FILE");
  command.final_callback([options, &task] {
    checkStandardInput(options->recording, "");
    task = [options](const Console& console) { return makeNew(*options, console); };
  });
}

}  // namespace orvantis::app
