#include "document/Check.h"

#include <exception>
#include <sstream>

#include "document/JsonFault.h"
#include "document/LocatedJson.h"
#include "document/checks/Structure.h"

namespace orvantis::toolkit {
namespace {

std::string complaintOf(std::string_view text) {
  std::istringstream in{std::string(text)};
  try {
    filter::detection::ZoneDetector::validate(in);
  } catch (const std::exception& error) {
    return error.what();
  }
  return {};
}

Finding refusal(const std::string& reason) {
  return {FindingKind::Refused, {}, "", "cannot be loaded: " + reason, ""};
}

}  // namespace

Finding tooLarge(const std::string& what) {
  return {FindingKind::TooLarge,
          {},
          "",
          what + " is too large; give it fewer than " + std::to_string(documentSizeLimit) + " bytes",
          ""};
}

CheckedDocument check(std::string_view text) {
  CheckedDocument result;
  result.complaint = complaintOf(text.substr(0, documentSizeLimit));
  if (text.size() >= documentSizeLimit) {
    result.findings.push_back(tooLarge("the document"));
    return result;
  }
  const LocatedDocument document = parseLocated(text);
  if (!document.root) {
    result.findings.push_back(describe(document.fault, text));
    return result;
  }
  result.findings = findingsOf(*document.root);
  if (result.errors() == 0 && !result.complaint.empty()) {
    result.findings.push_back(refusal(result.complaint));
  }
  if (result.errors() == 0) {
    try {
      result.configuration = load(*document.root);
    } catch (const std::exception& error) {
      result.findings.push_back(refusal(error.what()));
    }
  }
  return result;
}

}  // namespace orvantis::toolkit
