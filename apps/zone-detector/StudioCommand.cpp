#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "Command.h"
#include "Console.h"
#include "OptionChecks.h"

namespace orvantis::app {
namespace {

namespace fs = std::filesystem;

struct StudioOptions {
  std::string document;
  std::vector<std::string> frames;
  std::string tracks;
  std::string page;
  int port = 0;
  bool noBrowser = false;
};

constexpr const char* help = R"(Examples:
  zone-detector studio                                          the example, ready to play
  zone-detector studio site.json scan.pcd                       draw zones on a scan
  zone-detector studio site.json drive.mcap --tracks tracks.csv

Opens the page where zones are drawn in a browser. Serves that page and the files named here, and nothing
else, to this machine alone; the page can save the document back. Ends with Ctrl-C.)";

// Where this program is, installed or built: what belongs to it lies at a fixed place beside it.
fs::path besideProgram(const std::vector<const char*>& places, const char* what) {
  std::error_code error;
  const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
  for (const char* place : places) {
    fs::path path = (folder / place).lexically_normal();
    if (fs::exists(path, error)) {
      return path;
    }
  }
  throw Failure(what);
}

int studio(const StudioOptions& options) {
  const std::string page =
      options.page.empty()
          ? besideProgram({ORVANTIS_PAGE_FROM_HERE}, "the page is not installed; --page says where it is")
                .string()
          : options.page;
  const std::string server =
      besideProgram({ORVANTIS_STUDIO_FROM_HERE, "../zone-detector-studio/zone-detector-studio"},
                    "the server of the page is not installed beside this program")
          .string();
  std::vector<std::string> words = {
      server,           page,          std::to_string(options.port), options.noBrowser ? "0" : "1",
      options.document, options.tracks};
  words.insert(words.end(), options.frames.begin(), options.frames.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) {
    pointers.push_back(word.data());
  }
  pointers.push_back(nullptr);
  ::execv(server.c_str(), pointers.data());
  throw Failure(server, "cannot be started: " + std::error_code(errno, std::generic_category()).message());
}

}  // namespace

void addStudioCommand(CLI::App& program, Task& task) {
  const auto options = std::make_shared<StudioOptions>();
  CLI::App& command = addCommand(program, {"studio", "draw zones in a browser", help});
  command.add_option("FILE", options->document, "zone document; the page saves to it");
  command.add_option("FRAMES", options->frames, "frames and recordings to draw on");
  command.add_option("--tracks", options->tracks, "tracked objects");
  command.add_option("--port", options->port, "of this machine; 41307 unless given, or any that is free")
      ->option_text("N")
      ->check(wholeBetween(1, 65535));
  command.add_flag("--no-browser", options->noBrowser, "print the link and open nothing");
  command.add_option("--page", options->page, "folder of the page; the installed one unless given");
  command.final_callback([options, &task] { task = [options](const Console&) { return studio(*options); }; });
}

}  // namespace orvantis::app
