#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "Command.h"
#include "Console.h"
#include "Usage.h"

namespace {

using namespace orvantis::app;

constexpr int inputAtFault = 1;
constexpr int wrongUsage = 2;

constexpr const char* help = R"(Examples:
  zone-detector validate site.json             is the document right, and where is it wrong
  zone-detector show site.json                 fields, zones and counter lines
  zone-detector info scan.pcd drive.mcap       what frames and recordings contain
  zone-detector run site.json frames/*.pcd     points in each zone, frame by frame
  zone-detector run site.json frames/*.pcd --tracks tracks.csv     what happens, and a summary
  zone-detector explain site.json frames/*.pcd --at 1.2            why a zone is in its state
  zone-detector plot site.json scan.pcd -o plan.svg
  zone-detector studio site.json scan.pcd                          draw zones in a browser

Zones and counter lines on LiDAR frames. Data goes to the standard output, everything else to the error
stream. The exit code is 0 when all is good, 1 when an input is wrong, 2 for wrong usage.)";

// Puts the long text with the examples first. CLI11 would put the summary first and the long text at the end.
class ExamplesFirst : public CLI::Formatter {
 public:
  ExamplesFirst() { column_width(30); }
  std::string make_description(const CLI::App* app) const override { return app->get_footer() + "\n\n"; }
  std::string make_footer(const CLI::App*) const override { return ""; }
};

std::string variable(const char* name) {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread, which sets none
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// Whether the stream is a terminal that can move its cursor and change its colours.
bool canSteer(int stream) {
  return ::isatty(stream) == 1 && variable("TERM") != "dumb";
}

int runCommandLine(int argc, char** argv) {
  CLI::App program("", "zone-detector");
  program.footer(help);
  program.formatter(std::make_shared<ExamplesFirst>());
  program.set_version_flag("--version", "zone-detector " ORVANTIS_VERSION);
  program.require_subcommand(1);
  Task task;
  addValidateCommand(program, task);
  addShowCommand(program, task);
  addInfoCommand(program, task);
  addRunCommand(program, task);
  addExplainCommand(program, task);
  addPlotCommand(program, task);
  addNewCommand(program, task);
  addStudioCommand(program, task);
  bool isQuiet = false;
  for (CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    command->add_flag("-q,--quiet", isQuiet, "no warnings and no progress on the error stream");
  }
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& wish) {
    return program.exit(wish, std::cout, std::cerr);
  } catch (const CLI::ParseError& error) {
    std::cerr << "zone-detector: " << usageFault(program, error) << "\n"
              << commandOf(program) << " --help shows the usage\n";
    return wrongUsage;
  }
  const Console console{std::cout, std::cerr, canSteer(STDOUT_FILENO) && variable("NO_COLOR").empty(),
                        canSteer(STDERR_FILENO) && !isQuiet, isQuiet};
  return task(console);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return runCommandLine(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "zone-detector: " << error.what() << '\n';
    return inputAtFault;
  }
}
