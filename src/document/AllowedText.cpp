#include "detector/Limits.h"
#include "document/KeyTable.h"
#include "text/Number.h"

namespace orvantis::toolkit {
namespace {

// "a", "b" and "c"
std::string enumerated(const std::vector<std::string_view>& words, std::string_view last) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) {
      text += i + 1 < words.size() ? ", " : " " + std::string(last) + " ";
    }
    text += '"' + std::string(words[i]) + '"';
  }
  return text;
}

std::string allowedNumber(const Key& key) {
  std::string text = key.type == ValueType::WholeNumber ? "a whole number" : "a number";
  if (key.least && !key.most) {
    text += key.isAboveLeast ? " above " + toText(*key.least) : " from " + toText(*key.least) + " up";
  } else if (key.least && key.outside == FindingKind::OutOfRange) {
    text += " from " + toText(*key.least) + " to " + toText(*key.most);
  }
  return key.unit.empty() ? text : text + " (" + std::string(key.unit) + ")";
}

std::string allowedList(const Key& key) {
  std::string text = "a list of ";
  if (key.many && key.fewest == *key.many) {
    text += std::to_string(*key.many) + " ";
  } else if (key.many) {
    text += key.fewest == 0 ? "at most " : std::to_string(key.fewest) + " to ";
    text += std::to_string(*key.many) + " ";
  }
  return text + std::string(key.plural);
}

std::string allowedObject(const Key& key) {
  std::vector<std::string_view> required;
  for (const Key& inner : keysOf(key.holds)) {
    if (inner.isRequired) {
      required.push_back(inner.name);
    }
  }
  return required.empty() ? "an object" : "an object with " + enumerated(required, "and");
}

}  // namespace

std::string allowed(const Key& key) {
  return key.isList ? allowedList(key) : allowedEntry(key);
}

std::string allowedEntry(const Key& key) {
  switch (key.type) {
    case ValueType::Text:
      break;
    case ValueType::Number:
    case ValueType::WholeNumber:
      return allowedNumber(key);
    case ValueType::Truth:
      return "true or false";
    case ValueType::Object:
      return allowedObject(key);
  }
  if (!key.words.empty()) {
    return enumerated(key.words, "or");
  }
  return key.isName
             ? "a text of 1 to " + std::to_string(orvantis::filter::detection::maxNameLength) + " bytes"
             : "a text";
}

}  // namespace orvantis::toolkit
