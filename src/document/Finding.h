#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orvantis::toolkit {

/// A place in a text. Lines and columns count from 1, and a column is one character.
struct Position {
  std::size_t line = 1;
  std::size_t column = 1;
};

/// What a finding is about. Each kind has a text id, which never changes.
enum class FindingKind {
  // Errors: the document cannot be loaded, or loading drops something silently.
  TooLarge,
  JsonFault,
  WrongType,
  MissingKey,
  MissingTopNode,
  EmptyDocument,
  MisspeltKey,
  MisplacedKey,
  RepeatedKey,
  UnknownWord,
  OutOfRange,
  NameLength,
  TooFew,
  TooMany,
  RepeatedIndex,
  RepeatedLine,
  InvalidId,
  Refused,
  // Warnings: it is loaded, but is probably a mistake.
  UnknownKey,
  UnreadShape,
  NeedlessList,
  UnquotedText,
  EmptyName,
  RepeatedName,
  NewerVersion,
  NoFields,
  UnlikelyValue,
  EmptyRegion,
  CrossingEdges,
  EmptyHeights,
  EmptyLine,
};

enum class Severity { Error, Warning };

/// The text id, such as "missing-key".
std::string_view idOf(FindingKind kind);
Severity severityOf(FindingKind kind);
/// "error" or "warning".
std::string_view wordOf(Severity severity);

/// Something wrong or doubtful in a document.
struct Finding {
  FindingKind kind = FindingKind::Refused;
  Position at;
  std::string path;  ///< such as ZoneDetector/EvaluationField[0]/Zone[1]/Polygon; empty for the document
  std::string text;
  std::string excerpt;  ///< for a JSON fault: the line, and below it a caret at the column

  Severity severity() const { return severityOf(kind); }
};

/// How many of the findings have that severity.
std::size_t countOf(const std::vector<Finding>& findings, Severity severity);

}  // namespace orvantis::toolkit
