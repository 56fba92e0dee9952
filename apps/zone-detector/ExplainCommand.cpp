#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

#include <CLI/CLI.hpp>

#include "Command.h"
#include "Console.h"
#include "Explanation.h"
#include "OptionChecks.h"
#include "RecordingOptions.h"
#include "SessionOptionsParser.h"
#include "text/StampText.h"

namespace orvantis::app {
namespace {

const CommandText text = {"explain", "explain the states of zones and the counts of lines",
                          R"(Examples:
  zone-detector explain site.json frames/*.pcd             each zone's best frame
  zone-detector explain site.json frames/*.pcd --at 1.2    the zones at one instant
  zone-detector explain site.json --tracks tracks.csv --line Gate              every track at a line
  zone-detector explain site.json --tracks tracks.csv --line Gate --track 7    one track, sighting by sighting

Runs a recording, up to a stamp if one is given. Then prints, for each zone, how many points count, how many an
exclusion zone took and which one, and how many are inside the outline but below or above the heights; if no
point is inside the outline, the nearest one. For a line, it prints which tracks counted, which did not, and why.)"};

/// @throws std::invalid_argument
filter::monitor::Stamp stampOf(const std::string& word) {
  filter::monitor::Stamp stamp{};
  const char* const end = word.data() + word.size();
  const auto [read, fault] = toolkit::readSeconds(word.data(), end, stamp);
  if (fault != std::errc() || read != end) {
    throw std::invalid_argument("must be a number of seconds, less than 4.6e9 off zero");
  }
  return stamp;
}

}  // namespace

void addExplainCommand(CLI::App& program, Task& task) {
  const auto options = std::make_shared<ExplainOptions>();
  CLI::App& command = addCommand(program, text);
  command.add_option("FILE", options->document, "zone document; - is the standard input")->required();
  addRecordingOptions(command, options->recording);
  command
      .add_option_function<std::string>(
          "--at", [options](const std::string& word) { options->at = stampOf(word); },
          "stamp in seconds; without it, the whole recording")
      ->option_text("STAMP")
      ->check(parsedBy(stampOf));
  CLI::Option* const line =
      command.add_option("--line", options->line, "counter line whose tracks are explained")
          ->option_text("NAME");
  line->needs(command.get_option("--tracks"));
  command.get_option("--tracks")->needs(line);
  command.add_option("--track", options->track, "id of one of these tracks, whose sightings are printed")
      ->option_text("ID")
      ->needs(line);
  command.add_flag("--json", options->json, "one JSON object per line");
  addSessionOptions(command, options->session);
  command.final_callback([options, &task] {
    checkRecording(options->recording, options->document);
    task = [options](const Console& console) { return explain(*options, console); };
  });
}

}  // namespace orvantis::app
