#include <cstdlib>
#include <exception>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "Console.h"
#include "ExplainCommand.h"
#include "PlotCommand.h"
#include "RunCommand.h"
#include "ShowCommand.h"
#include "TimeLine.h"
#include "ValidateCommand.h"

namespace {

using namespace orvantis::app;

constexpr int inputAtFault = 1;
constexpr int wrongUsage = 2;

// What a command does in a line, and its help: worked examples, then what it does.
struct Help {
  const char* summary;
  const char* text;
};

constexpr Help overview = {
    "",
    "Examples:\n"
    "  zone-detector validate site.json             is the document right, and if not, where\n"
    "  zone-detector show site.json                 fields, zones and counter lines\n"
    "  zone-detector run site.json frames/*.pcd     points in each zone, frame by frame\n"
    "  zone-detector run site.json frames/*.pcd --tracks tracks.csv     what happens, and a summary\n"
    "  zone-detector explain site.json frames/*.pcd --at 1.2            why a zone is in its state\n"
    "  zone-detector plot site.json scan.pcd -o plan.svg\n"
    "\n"
    "Zones and counter lines on LiDAR frames. Data goes to the standard output, everything else to the "
    "error\n"
    "stream. Ends with 0 when all is good, 1 when an input is at fault, 2 for wrong usage."};

constexpr Help validateHelp = {
    "check zone documents, and say where they are wrong or doubtful",
    "Examples:\n"
    "  zone-detector validate site.json\n"
    "  zone-detector validate --strict sites/*.json     what is doubtful is wrong too\n"
    "\n"
    "Checks zone documents. The fixed check decides; what it leaves out follows as warnings, each with its "
    "line\n"
    "and its place in the document."};

constexpr Help showHelp = {
    "print what a zone document holds",
    "Examples:\n"
    "  zone-detector show site.json\n"
    "  zone-detector show --json site.json\n"
    "\n"
    "Prints options, evaluation fields, exclusion zones and counter lines of a zone document."};

constexpr Help runHelp = {
    "count points in zones, or tell what happens in a recording",
    "Examples:\n"
    "  zone-detector run site.json frames/*.pcd\n"
    "  zone-detector run --json site.json frames/*.bin > counts.jsonl\n"
    "  zone-detector run site.json frames/*.pcd --rate 10 --tracks tracks.csv\n"
    "  zone-detector run site.json --stamps frames.txt --csv tables --plot run.svg\n"
    "\n"
    "Counts, for each frame, the points inside each zone and outside every exclusion zone. Frames are PCD, "
    "PLY\n"
    "or XYZ files, or .bin files of float32 x, y, z, intensity. Stops at the first frame that cannot be "
    "read.\n"
    "\n"
    "With --tracks, --rate, --stamps, --csv or --plot the frames have a time; what happens is told instead: "
    "zones\n"
    "occupied and cleared, tracked objects that enter, leave and cross lines, and a summary at the end."};

constexpr Help explainHelp = {
    "say why zones and counter lines are in the state they are in",
    "Examples:\n"
    "  zone-detector explain site.json frames/*.pcd --at 1.2\n"
    "  zone-detector explain site.json --tracks tracks.csv --at 1.9 --line Gate --track 7\n"
    "\n"
    "Runs a recording up to the last frame at or before a stamp. Then says, for each zone, how many points "
    "count,\n"
    "how many an exclusion zone took and which one, and when its state changes; for a line and a track, why "
    "the\n"
    "track did or did not count."};

constexpr Help plotHelp = {
    "draw the plan as SVG",
    "Examples:\n"
    "  zone-detector plot site.json -o plan.svg\n"
    "  zone-detector plot site.json scan.pcd -o plan.svg\n"
    "\n"
    "Draws zones, exclusion zones and counter lines to scale, over a scan if one is given."};

// Puts the worked examples first; CLI11 keeps a long text for the end and the summary for the top.
class ExamplesFirst : public CLI::Formatter {
 public:
  ExamplesFirst() { column_width(30); }
  std::string make_description(const CLI::App* app) const override { return app->get_footer() + "\n\n"; }
  std::string make_footer(const CLI::App*) const override { return ""; }
};

CLI::App* addCommand(CLI::App& app, const std::string& name, const Help& help) {
  return app.add_subcommand(name, help.summary)->footer(help.text);
}

// The options that say where frames come from.
void addRecording(CLI::App& command, Recording& recording) {
  static const std::map<std::string, TracksFormat> formats = {{"csv", TracksFormat::Csv},
                                                              {"kitti", TracksFormat::Kitti}};
  CLI::Option* const clouds =
      command.add_option("CLOUD", recording.clouds, "frames, in order")->option_text("...");
  CLI::Option* const rate = command.add_option("--rate", recording.rate, "frames a second; 10 unless given")
                                ->option_text("HZ")
                                ->check(CLI::PositiveNumber);
  command.add_option("--stamps", recording.stamps, "list of frames, each with its stamp, in place of CLOUD")
      ->option_text("LIST")
      ->excludes(clouds)
      ->excludes(rate);
  CLI::Option* const tracks =
      command.add_option("--tracks", recording.tracks, "tracked objects")->option_text("TRACKS");
  command.add_option("--tracks-format", recording.tracksFormat, "csv unless given")
      ->option_text("csv|kitti")
      ->transform(CLI::CheckedTransformer(formats))
      ->needs(tracks);
  command.final_callback([&recording] {
    if (!recording.hasClouds() && !recording.hasTracks()) {
      throw CLI::RequiredError("CLOUD, --stamps or --tracks");
    }
  });
}

bool wantsColour() {
  const char* const noColour =
      std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe): one thread, which sets none
  return ::isatty(STDOUT_FILENO) == 1 && (noColour == nullptr || *noColour == '\0');
}

int runCommandLine(int argc, char** argv, const Console& console) {
  CLI::App app(overview.summary, "zone-detector");
  app.footer(overview.text);
  app.formatter(std::make_shared<ExamplesFirst>());
  app.set_version_flag("--version", "zone-detector " ORVANTIS_VERSION);
  app.require_subcommand(1);

  std::vector<std::string> documents;
  bool strict = false;
  CLI::App* const validateCommand = addCommand(app, "validate", validateHelp);
  validateCommand->add_option("FILE", documents, "zone documents")->required();
  validateCommand->add_flag("--strict", strict, "warnings make the exit code 1 too");

  std::string document;
  bool json = false;
  CLI::App* const showCommand = addCommand(app, "show", showHelp);
  showCommand->add_option("FILE", document, "zone document")->required();
  showCommand->add_flag("--json", json, "one JSON object");

  RunOptions runOptions;
  CLI::App* const runCommand = addCommand(app, "run", runHelp);
  runCommand->add_option("FILE", runOptions.document, "zone document")->required();
  addRecording(*runCommand, runOptions.recording);
  runCommand->add_flag("--json", runOptions.json, "one JSON object a line");
  runCommand->add_option("--csv", runOptions.csvFolder, "folder to write tables into")->option_text("DIR");
  runCommand->add_option("--plot", runOptions.picture, "picture to write")->option_text("FILE");
  CLI::Option* const reference =
      runCommand->add_flag("--reference", runOptions.reference, "ask every zone for every point, slowly")
          ->option_text(" ");
  for (const char* const ofSession : {"--rate", "--stamps", "--tracks", "--csv", "--plot"}) {
    reference->excludes(runCommand->get_option(ofSession));
  }

  ExplainOptions explainOptions;
  CLI::App* const explainCommand = addCommand(app, "explain", explainHelp);
  explainCommand->add_option("FILE", explainOptions.document, "zone document")->required();
  addRecording(*explainCommand, explainOptions.recording);
  explainCommand->add_option("--at", explainOptions.at, "stamp in seconds")
      ->option_text("STAMP REQUIRED")
      ->required()
      ->check(CLI::Range(-9.2e9, 9.2e9));
  CLI::Option* const line =
      explainCommand->add_option("--line", explainOptions.line, "counter line")->option_text("NAME");
  CLI::Option* const track =
      explainCommand->add_option("--track", explainOptions.track, "a track on that line, by its id")
          ->option_text("ID");
  line->needs(track)->needs(explainCommand->get_option("--tracks"));
  track->needs(line);
  explainCommand->get_option("--tracks")->needs(line);

  PlotOptions plotOptions;
  CLI::App* const plotCommand = addCommand(app, "plot", plotHelp);
  plotCommand->add_option("FILE", plotOptions.document, "zone document")->required();
  plotCommand->add_option("CLOUD", plotOptions.cloud, "scan to draw under the zones");
  plotCommand->add_option("-o,--output", plotOptions.output, "picture to write; else the standard output");

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error, std::cout, std::cerr) == 0 ? EXIT_SUCCESS : wrongUsage;
  }
  if (validateCommand->parsed()) {
    return validate(documents, strict, console);
  }
  if (showCommand->parsed()) {
    return show(document, json, console);
  }
  if (runCommand->parsed()) {
    return run(runOptions, console);
  }
  if (explainCommand->parsed()) {
    return explain(explainOptions, console);
  }
  return plot(plotOptions, console);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return runCommandLine(argc, argv, {std::cout, std::cerr, wantsColour(), ::isatty(STDERR_FILENO) == 1});
  } catch (const std::exception& error) {
    std::cerr << "zone-detector: " << error.what() << '\n';
    return inputAtFault;
  }
}
