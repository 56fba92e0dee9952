#include "document/checks/ValueChecks.h"

#include <algorithm>

#include <filter/detection/ZoneDetector.h>

#include "detector/Limits.h"
#include "document/Spelling.h"
#include "document/checks/Values.h"
#include "text/LowerCase.h"
#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::ZoneDetector;
using Kind = LocatedNode::Kind;

class ValueCheck {
 public:
  ValueCheck(const LocatedNode& node, const Key& key, const std::string& path, Report& report)
      : node_(node), key_(key), path_(path), report_(report) {}

  void run() {
    switch (key_.type) {
      case ValueType::Text:
        return checkText();
      case ValueType::Number:
        return checkNumber(numberOf(node_));
      case ValueType::WholeNumber:
        return checkNumber(wholeNumberOf(node_));
      case ValueType::Truth:
        return truthOf(node_) ? void() : reportType();
      case ValueType::Object:
        return node_.kind == Kind::Object ? void() : reportType();
    }
  }

 private:
  void checkText() {
    if (node_.kind == Kind::Object || node_.kind == Kind::Array ||
        (node_.kind == Kind::Literal && node_.text == "null")) {
      return reportType();
    }
    if (!key_.words.empty()) {
      return checkWord();
    }
    if (node_.kind == Kind::Literal) {
      add(FindingKind::UnquotedText, node_.text + " is read as a text; write " + quoted(node_.text));
    }
    if (key_.isName && !ZoneDetector::validateZoneNameLength(node_.text)) {
      add(FindingKind::NameLength, "the name has " + counted(node_.text.size(), "byte") + "; 1 to " +
                                       std::to_string(orvantis::filter::detection::maxNameLength) +
                                       " are allowed");
    }
  }

  void checkWord() {
    const std::string word = lowerCase(node_.text);
    if (std::find(key_.words.begin(), key_.words.end(), word) != key_.words.end()) {
      return;
    }
    const std::string_view meant = nearest(word, key_.words);
    add(FindingKind::UnknownWord,
        described(node_) + " is unknown; " +
            (meant.empty() ? "choose " + allowedEntry(key_) : "did you mean " + quoted(meant) + "?"));
  }

  template <typename T>
  void checkNumber(std::optional<T> value) {
    if (!value) {
      return reportType();
    }
    const auto number = static_cast<double>(*value);
    const bool isBelow = key_.least && (key_.isAboveLeast ? number <= *key_.least : number < *key_.least);
    if (!isBelow && (!key_.most || number <= *key_.most)) {
      return;
    }
    std::string text = toText(number);
    if (key_.most) {
      text += " is outside " + toText(*key_.least, 4) + " to " + toText(*key_.most, 4);
    } else {
      text += (key_.isAboveLeast ? " is not above " : " is below ") + toText(*key_.least);
    }
    add(key_.outside, text + (key_.hint.empty() ? "" : "; ") + std::string(key_.hint));
  }

  void reportType() {
    // Loading does not read a label, so a wrong type there loses nothing.
    const bool isNote = key_.isLabel && !key_.isRequired;
    add(isNote ? FindingKind::UnlikelyValue : FindingKind::WrongType,
        described(node_) + " stands where " + allowedEntry(key_) + " belongs");
  }

  void add(FindingKind kind, std::string text) { report_.add(kind, node_.value, path_, std::move(text)); }

  const LocatedNode& node_;
  const Key& key_;
  const std::string& path_;
  Report& report_;
};

}  // namespace

void checkValue(const LocatedNode& node, const Key& key, const std::string& path, Report& report) {
  ValueCheck(node, key, path, report).run();
}

std::string described(const LocatedNode& node) {
  switch (node.kind) {
    case Kind::Object:
      return "an object";
    case Kind::Array:
      return "a list";
    case Kind::Text:
      return quoted(node.text);
    case Kind::Literal:
      break;
  }
  return node.text.size() > 40 ? node.text.substr(0, 40) + "..." : node.text;
}

}  // namespace orvantis::toolkit
