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
  CLI::App& command = addCommand(program, {"info", "print what frames and recordings contain", R"(Examples:
  zone-detector info scan.pcd
  zone-detector info --json drive.mcap

Reads each file whole. Prints its kind, points, columns, extents, the height of most points, the points that did
not return and the points at the origin; for a recording also its topics, stamps and rate.)"});
  command.add_option("FILE", options->files, "frames and recordings; folders of them; - for a list of them")
      ->required();
  command
      .add_option(
          "--columns",
          "columns of .bin and text files: their number (x, y, z first), letters (xyzi) or names (t,x,y,z)")
      ->option_text("LIST")
      ->check(parsedBy(toolkit::parseColumnNames))
      ->each([options](const std::string& text) { options->columns = toolkit::parseColumnNames(text); });
  command.add_flag("--json", options->json, "one JSON object per line");
  command.final_callback(
      [options, &task] { task = [options](const Console& console) { return info(*options, console); }; });
}

}  // namespace orvantis::app
