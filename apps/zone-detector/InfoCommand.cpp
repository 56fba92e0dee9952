#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Command.h"
#include "Console.h"
#include "FileInfo.h"
#include "OptionChecks.h"

namespace orvantis::app {

void addInfoCommand(CLI::App& program, Task& task) {
  const auto options = std::make_shared<InfoOptions>();
  CLI::App& command = addCommand(program, {"info", "say what frames and recordings hold", R"(Examples:
  zone-detector info scan.pcd
  zone-detector info --json drive.mcap

Reads each file whole. Says its kind, points, columns, extents, the height that most points are at, points that
did not return and points at the origin; of a recording its topics, stamps and rate too.)"});
  command.add_option("FILE", options->files, "frames and recordings; folders of them; - for a list of them")
      ->required();
  command
      .add_option(
          "--columns",
          "of .bin and text files: how many (x, y, z first), a letter each (xyzi), or names (t,x,y,z)")
      ->option_text("LIST")
      ->check(parsedBy(toolkit::parseColumnNames))
      ->each([options](const std::string& text) { options->columns = toolkit::parseColumnNames(text); });
  command.add_flag("--json", options->json, "one JSON object a line");
  command.final_callback(
      [options, &task] { task = [options](const Console& console) { return info(*options, console); }; });
}

}  // namespace orvantis::app
