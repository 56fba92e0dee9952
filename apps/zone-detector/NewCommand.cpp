#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "CloudReader.h"
#include "Command.h"
#include "Console.h"
#include "document/NewDocument.h"
#include "files/AtomicFile.h"
#include "session/SiteEstimate.h"

namespace orvantis::app {
namespace {

struct NewOptions {
  std::string output;
  std::vector<std::string> clouds;
};

Site siteOf(const std::vector<std::string>& clouds) {
  if (clouds.empty()) {
    return {};
  }
  SiteEstimate estimate;
  for (const std::string& path : clouds) {
    estimate.add(viewOf(readCloud(path)));
  }
  const auto site = estimate.site();
  if (!site) {
    throw Failure(clouds.front(), "has no points to put a zone around");
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
  const std::string text = newDocument(siteOf(options.clouds));
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
and the heights of the zone are above the ground, which is the height of most points.)"});
  command.add_option("CLOUD", options->clouds, "frames of the site")->option_text("...");
  command.add_option("-o,--output", options->output, "document to write; without it, the standard output")
      ->option_text("FILE");
  command.final_callback(
      [options, &task] { task = [options](const Console& console) { return makeNew(*options, console); }; });
}

}  // namespace orvantis::app
