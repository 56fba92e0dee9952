#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "Console.h"
#include "PlotCommand.h"
#include "RunCommand.h"
#include "ShowCommand.h"
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

constexpr Help runHelp = {"count the points of frames in each zone",
                          "Examples:\n"
                          "  zone-detector run site.json frames/*.pcd\n"
                          "  zone-detector run --json site.json frames/*.bin > counts.jsonl\n"
                          "\n"
                          "Counts, for each frame, the points inside each zone and outside every exclusion "
                          "zone. Frames are PCD, PLY\n"
                          "or XYZ files, or .bin files of float32 x, y, z, intensity. Stops at the first "
                          "frame that cannot be read."};

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

bool wantsColour() {
  const char* const noColour = std::getenv("NO_COLOR");
  return ::isatty(STDOUT_FILENO) == 1 && (noColour == nullptr || *noColour == '\0');
}

}  // namespace

int main(int argc, char** argv) {
  const Console console{std::cout, std::cerr, wantsColour(), ::isatty(STDERR_FILENO) == 1};

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
  runCommand->add_option("CLOUD", runOptions.clouds, "frames, in order")->required();
  runCommand->add_flag("--json", runOptions.json, "one JSON object a line");
  runCommand->add_flag("--reference", runOptions.reference, "ask every zone for every point, slowly");

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
  try {
    if (validateCommand->parsed()) {
      return validate(documents, strict, console);
    }
    if (showCommand->parsed()) {
      return show(document, json, console);
    }
    if (runCommand->parsed()) {
      return run(runOptions, console);
    }
    return plot(plotOptions, console);
  } catch (const std::exception& error) {
    console.err << "zone-detector: " << error.what() << '\n';
    return inputAtFault;
  }
}
