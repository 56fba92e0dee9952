#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orvantis::toolkit {

/// A place in a text, both counted from 1; a column is a character, whatever its bytes.
struct Position {
  std::size_t line = 1;
  std::size_t column = 1;
};

/// What a finding is about. Each has a text id, which stays as it is from version to version.
enum class FindingKind {
  // What keeps a document from being loaded, or what loading drops without a word: errors.
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
  // What is loaded as it stands, but is hardly meant: warnings.
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

/// Such as "missing-key".
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
  std::string excerpt;  ///< of a JSON fault: the line, and beneath it a caret at the column

  Severity severity() const { return severityOf(kind); }
};

/// How many of the findings are of that severity.
std::size_t countOf(const std::vector<Finding>& findings, Severity severity);

}  // namespace orvantis::toolkit
