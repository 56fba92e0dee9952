#include "document/Finding.h"

#include <algorithm>

namespace orvantis::toolkit {

std::string_view idOf(FindingKind kind) {
  switch (kind) {
    case FindingKind::TooLarge:
      return "too-large";
    case FindingKind::JsonFault:
      return "json-fault";
    case FindingKind::WrongType:
      return "wrong-type";
    case FindingKind::MissingKey:
      return "missing-key";
    case FindingKind::MissingTopNode:
      return "missing-top-node";
    case FindingKind::EmptyDocument:
      return "empty-document";
    case FindingKind::MisspeltKey:
      return "misspelt-key";
    case FindingKind::MisplacedKey:
      return "misplaced-key";
    case FindingKind::RepeatedKey:
      return "repeated-key";
    case FindingKind::UnknownWord:
      return "unknown-word";
    case FindingKind::OutOfRange:
      return "out-of-range";
    case FindingKind::NameLength:
      return "name-length";
    case FindingKind::TooFew:
      return "too-few";
    case FindingKind::TooMany:
      return "too-many";
    case FindingKind::RepeatedIndex:
      return "repeated-index";
    case FindingKind::RepeatedLine:
      return "repeated-line";
    case FindingKind::InvalidId:
      return "invalid-id";
    case FindingKind::Refused:
      return "refused";
    case FindingKind::UnknownKey:
      return "unknown-key";
    case FindingKind::UnreadShape:
      return "unread-shape";
    case FindingKind::NeedlessList:
      return "needless-list";
    case FindingKind::UnquotedText:
      return "unquoted-text";
    case FindingKind::EmptyName:
      return "empty-name";
    case FindingKind::RepeatedName:
      return "repeated-name";
    case FindingKind::NewerVersion:
      return "newer-version";
    case FindingKind::NoFields:
      return "no-fields";
    case FindingKind::UnlikelyValue:
      return "unlikely-value";
    case FindingKind::EmptyRegion:
      return "empty-region";
    case FindingKind::CrossingEdges:
      return "crossing-edges";
    case FindingKind::EmptyHeights:
      return "empty-heights";
    case FindingKind::EmptyLine:
      return "empty-line";
  }
  return "";
}

Severity severityOf(FindingKind kind) {
  return kind <= FindingKind::Refused ? Severity::Error : Severity::Warning;
}

std::string_view wordOf(Severity severity) {
  return severity == Severity::Error ? "error" : "warning";
}

std::size_t countOf(const std::vector<Finding>& findings, Severity severity) {
  return static_cast<std::size_t>(
      std::count_if(findings.begin(), findings.end(),
                    [severity](const Finding& finding) { return finding.severity() == severity; }));
}

}  // namespace orvantis::toolkit
