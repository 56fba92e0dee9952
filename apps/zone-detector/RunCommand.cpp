#include "RunCommand.h"

#include <memory>

#include <CLI/CLI.hpp>

#include "Command.h"
#include "Console.h"
#include "DocumentFile.h"
#include "ExtentOption.h"
#include "FrameCounts.h"
#include "RecordingOptions.h"
#include "SessionOptionsParser.h"
#include "SessionRun.h"

namespace orvantis::app {
namespace {

const CommandText text = {"run", "count points in zones, or print what happens in a recording",
                          R"(Examples:
  zone-detector run site.json frames/*.pcd
  zone-detector run --json site.json frames/*.bin > counts.jsonl
  zone-detector run site.json frames/*.pcd --rate 10 --tracks tracks.csv
  zone-detector run site.json --stamps frames.txt --csv tables --plot run.svg
  zone-detector run site.json drive.mcap --sensors sensors.json --events

Counts, for each frame, the points inside each zone and outside every exclusion zone. Frames are PCD, PLY,
LAS, text and .bin files and the point clouds of MCAP files and ROS bags. Stops at the first frame that cannot
be read; a recording that is cut off is read to its last whole frame, with a warning and exit code 4.

With --events, --tracks, --rate, --stamps, --csv or --plot the frames have stamps. The command then prints what
happens: zones occupied and cleared, tracked objects that enter, leave and cross lines, and a summary.)"};

// Counts the points of each frame or, if the frames have stamps, prints what happens.
int run(const RunOptions& options, const Console& console) {
  const Configuration configuration = readConfiguration(options.document, console);
  return (options.hasTime() ? runSession : countFrames)(configuration, options, console);
}

}  // namespace

void addRunCommand(CLI::App& program, Task& task) {
  const auto options = std::make_shared<RunOptions>();
  CLI::App& command = addCommand(program, text);
  command.add_option("FILE", options->document, "zone document; - is the standard input")->required();
  addRecordingOptions(command, options->recording);
  command.add_flag("--json", options->json, "one JSON object per line");
  command.add_flag("--events", options->events, "print what happens, by the stamps of a recording")
      ->option_text(" ");
  command.add_option("--csv", options->csvFolder, "folder to write tables into")->option_text("DIR");
  command.add_option("--plot", options->picture, "picture to write")->option_text("FILE");
  addExtentOption(command, options->extent);
  addSessionOptions(command, options->session);
  CLI::Option* const reference =
      command.add_flag("--reference", options->reference, "ask every zone about every point, slowly")
          ->option_text(" ");
  for (const char* const ofSession :
       {"--sensors", "--events", "--rate", "--stamps", "--tracks", "--csv", "--plot"}) {
    reference->excludes(command.get_option(ofSession));
  }
  command.final_callback([options, &task] {
    checkRecording(options->recording, options->document);
    task = [options](const Console& console) { return run(*options, console); };
  });
}

}  // namespace orvantis::app
