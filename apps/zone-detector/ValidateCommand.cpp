#include "ValidateCommand.h"

#include <memory>
#include <sstream>

#include <CLI/CLI.hpp>

#include <filter/detection/ZoneDetector.h>

#include "Command.h"
#include "Console.h"
#include "document/Configuration.h"
#include "document/Lint.h"
#include "document/LocatedJson.h"
#include "files/File.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

// The library's complaint; empty for a good document.
std::string fixedCheck(const std::string& text) {
  std::istringstream in(text);
  try {
    filter::detection::ZoneDetector::validate(in);
  } catch (const std::exception& error) {
    return error.what();
  }
  return {};
}

// The library's text keeps its line break; anything else that steers a terminal is written out.
std::string printableLines(const std::string& message) {
  std::string text;
  std::istringstream lines(message);
  for (std::string line; std::getline(lines, line);) {
    text += (text.empty() ? "" : "\n") + printable(line);
  }
  return text;
}

bool validateOne(const std::string& path, bool strict, const Console& console) {
  std::string text;
  try {
    text = readFile(path, documentSizeLimit);
  } catch (const Failure& failure) {
    console.out << console.coloured(1, failure.what()) << '\n';
    return false;
  }
  const std::string complaint = fixedCheck(text);
  console.out << path << ": "
              << (complaint.empty() ? console.coloured(2, "ok")
                                    : console.coloured(1, printableLines(complaint)))
              << '\n';
  const auto document = text.size() < documentSizeLimit ? parseLocated(text) : std::nullopt;
  const std::vector<Finding> findings = document ? lint(*document) : std::vector<Finding>();
  for (const Finding& finding : findings) {
    console.out << path << ':' << finding.line << ": " << console.coloured(3, "warning") << ": "
                << printable(finding.path) << (finding.path.empty() ? "" : ": ") << printable(finding.text)
                << '\n';
  }
  return complaint.empty() && (findings.empty() || !strict);
}

}  // namespace

int validate(const std::vector<std::string>& paths, bool strict, const Console& console) {
  bool good = true;
  for (const std::string& path : paths) {
    good = validateOne(path, strict, console) && good;
  }
  console.flush();
  return good ? 0 : 1;
}

void addValidateCommand(CLI::App& program, Task& task) {
  struct Options {
    std::vector<std::string> documents;
    bool strict = false;
  };
  const auto options = std::make_shared<Options>();
  CLI::App& command =
      addCommand(program, {"validate", "check zone documents, and say where they are wrong or doubtful",
                           R"(Examples:
  zone-detector validate site.json
  zone-detector validate --strict sites/*.json     what is doubtful is wrong too

Checks zone documents. The fixed check decides; what it leaves out follows as warnings, each with its line
and its place in the document.)"});
  command.add_option("FILE", options->documents, "zone documents")->required();
  command.add_flag("--strict", options->strict, "warnings make the exit code 1 too");
  command.final_callback([options, &task] {
    task = [options](const Console& console) {
      return validate(options->documents, options->strict, console);
    };
  });
}

}  // namespace orvantis::app
