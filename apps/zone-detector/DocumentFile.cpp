#include "DocumentFile.h"

#include <utility>

#include "Console.h"
#include "Input.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

// The errors, one per line. Only the first ones, because a file that is not a document may have thousands.
std::string refusal(const std::string& path, const std::vector<Finding>& findings, const std::string& hint) {
  constexpr std::size_t shown = 20;
  std::string text = counted(countOf(findings, Severity::Error), "error");
  std::size_t count = 0;
  for (const Finding& finding : findings) {
    if (finding.severity() == Severity::Error && ++count <= shown) {
      text += "\n" + textOf(path, finding, "error");
    }
  }
  if (count > shown) {
    text += "\n" + counted(count - shown, "more error") + hint;
  }
  return text;
}

}  // namespace

CheckedDocument checkFile(const std::string& path) {
  return check(readInput(path, documentSizeLimit));
}

std::string textOf(const std::string& path, const Finding& finding, const std::string& severity) {
  std::string text = path + ":" + std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) +
                     ": " + severity + ": ";
  if (!finding.path.empty()) {
    text += printable(finding.path) + ": ";
  }
  text += printable(finding.text);
  return finding.excerpt.empty() ? text : text + "\n" + finding.excerpt;
}

void tellFindings(const std::string& path, const std::vector<Finding>& findings, const std::string& hint,
                  const Console& console) {
  if (countOf(findings, Severity::Error) > 0) {
    throw Failure(path, refusal(path, findings, hint));
  }
  if (!console.quiet) {
    for (const Finding& finding : findings) {
      console.err << textOf(path, finding, "warning") << '\n';
    }
  }
}

Configuration readConfiguration(const std::string& path, const Console& console) {
  CheckedDocument document = checkFile(path);
  tellFindings(path, document.findings, "; \"zone-detector validate\" shows all", console);
  return std::move(*document.configuration);
}

}  // namespace orvantis::app
