#include <algorithm>
#include <memory>
#include <tuple>
#include <utility>

#include <CLI/CLI.hpp>
#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "Command.h"
#include "Console.h"
#include "DocumentFile.h"
#include "document/FindingText.h"
#include "text/JsonText.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

struct ValidateOptions {
  std::vector<std::string> documents;
  bool strict = false;  // whether warnings count as errors
  bool json = false;
};

bool isGood(const CheckedDocument& document, bool strict) {
  return document.configuration.has_value() && (document.findings.empty() || !strict);
}

std::string verdict(const CheckedDocument& document, const Console& console) {
  std::string text = document.configuration ? console.coloured(2, "ok") : "";
  for (const auto& [count, word, colour] :
       {std::tuple(document.errors(), "error", 1), std::tuple(document.warnings(), "warning", 3)}) {
    if (count > 0) {
      text += (text.empty() ? "" : ", ") + console.coloured(colour, counted(count, word));
    }
  }
  return text;
}

// Every output is on one line, so the complaint of the library must be, too.
std::string onOneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return printable(text);
}

void print(const std::string& path, const CheckedDocument& document, const Console& console) {
  console.out << printable(path) << ": " << verdict(document, console) << '\n';
  for (const Finding& finding : document.findings) {
    const int colour = finding.severity() == Severity::Error ? 1 : 3;
    console.out << textOf(path, finding, console.coloured(colour, std::string(wordOf(finding.severity()))))
                << '\n';
  }
  if (!document.complaint.empty()) {
    console.out << printable(path) << ": note: a host is told: " << onOneLine(document.complaint) << '\n';
  }
}

boost::json::object toObject(const Finding& finding) {
  return {{"kind", idOf(finding.kind)}, {"severity", wordOf(finding.severity())},
          {"line", finding.at.line},    {"column", finding.at.column},
          {"path", finding.path},       {"text", finding.text}};
}

void printJson(const std::string& path, const CheckedDocument& document, bool good, const Console& console) {
  boost::json::array findings;
  for (const Finding& finding : document.findings) {
    findings.push_back(toObject(finding));
  }
  console.out << toJson(boost::json::object{{"file", path}, {"ok", good}, {"findings", std::move(findings)}})
              << '\n';
}

void printUnreadable(const std::string& path, const Failure& failure, bool json, const Console& console) {
  if (!json) {
    console.out << console.coloured(1, failure.what()) << '\n';
    return;
  }
  const boost::json::object finding{
      {"kind", "unreadable"}, {"severity", "error"}, {"line", 0},
      {"column", 0},          {"path", ""},          {"text", failure.reason()}};
  console.out << toJson(boost::json::object{{"file", path}, {"ok", false}, {"findings", {finding}}}) << '\n';
}

bool validateOne(const std::string& path, const ValidateOptions& options, const Console& console) {
  try {
    const CheckedDocument document = checkFile(path);
    const bool good = isGood(document, options.strict);
    if (options.json) {
      printJson(path, document, good, console);
    } else {
      print(path, document, console);
    }
    return good;
  } catch (const Failure& failure) {
    printUnreadable(path, failure, options.json, console);
    return false;
  }
}

// Checks zone documents. Returns 0 when all of them can be loaded without loss, else 1.
int validate(const ValidateOptions& options, const Console& console) {
  bool good = true;
  for (const std::string& path : options.documents) {
    good = validateOne(path, options, console) && good;
  }
  console.flush();
  return good ? 0 : 1;
}

}  // namespace

void addValidateCommand(CLI::App& program, Task& task) {
  const auto options = std::make_shared<ValidateOptions>();
  CLI::App& command =
      addCommand(program, {"validate", "check zone documents, and print what is wrong or doubtful",
                           R"(Examples:
  zone-detector validate site.json
  zone-detector validate --strict sites/*.json     warnings are errors too

Checks zone documents and loads them. What cannot be loaded, or would be lost silently, is an error; what is
loaded but is probably a mistake is a warning. Each has its line, its column and its place in the document.)"});
  command.add_option("FILE", options->documents, "zone documents")->required();
  command.add_flag("--strict", options->strict, "warnings make the exit code 1 too");
  command.add_flag("--json", options->json, "one JSON object per file");
  command.final_callback(
      [options, &task] { task = [options](const Console& console) { return validate(*options, console); }; });
}

}  // namespace orvantis::app
