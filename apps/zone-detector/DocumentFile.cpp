#include "DocumentFile.h"

#include <utility>

#include "Console.h"
#include "document/FindingText.h"
#include "input/Input.h"

namespace orvantis::app {
CheckedDocument checkFile(const std::string& path) {
  return check(readInput(path, documentSizeLimit));
}

void tellFindings(const std::string& path, const std::vector<Finding>& findings, const std::string& hint,
                  const Console& console) {
  if (countOf(findings, Severity::Error) > 0) {
    throw Failure(path, refusalOf(path, findings, hint));
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
