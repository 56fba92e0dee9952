#include "document/FindingText.h"

#include <cstddef>

#include "text/Text.h"

namespace orvantis::toolkit {

std::string textOf(const std::string& path, const Finding& finding, const std::string& severity) {
  std::string text = printable(path) + ":" + std::to_string(finding.at.line) + ":" +
                     std::to_string(finding.at.column) + ": " + severity + ": ";
  if (!finding.path.empty()) {
    text += printable(finding.path) + ": ";
  }
  text += printable(finding.text);
  return finding.excerpt.empty() ? text : text + "\n" + finding.excerpt;
}

std::string refusalOf(const std::string& path, const std::vector<Finding>& findings,
                      const std::string& hint) {
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

}  // namespace orvantis::toolkit
