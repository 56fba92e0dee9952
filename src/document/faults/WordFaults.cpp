#include <array>
#include <utility>

#include "document/checks/Report.h"
#include "document/faults/Diagnosis.h"
#include "text/LowerCase.h"

namespace orvantis::toolkit {
namespace {

// Words of other languages, and the words of JSON for them.
constexpr std::array<std::pair<std::string_view, std::string_view>, 6> foreignWords = {{
    {"true", "true"},
    {"yes", "true"},
    {"false", "false"},
    {"no", "false"},
    {"none", "null"},
    {"undefined", "null"},
}};

bool isSign(char c) {
  return c == '+' || c == '-';
}

}  // namespace

// The parser stops at the byte after a broken word or number, such as "tru", "5." or "1e".
bool Diagnosis::isAfterBrokenWord() const {
  if (at_ == 0 || !isWordPart(text_[at_ - 1]) || isDigit(text_[at_ - 1])) {
    return false;
  }
  const std::string_view word = text_.substr(wordBegin(), at_ - wordBegin());
  return word != "true" && word != "false" && word != "null";
}

std::size_t Diagnosis::wordBegin() const {
  std::size_t begin = at_;
  while (begin > 0 && isWordPart(text_[begin - 1])) {
    --begin;
  }
  return begin;
}

Diagnosis::Cause Diagnosis::word() const {
  const std::size_t begin = wordBegin();
  std::size_t end = at_;
  while (end < text_.size() && isWordPart(text_[end])) {
    ++end;
  }
  const std::string_view whole = text_.substr(begin, end - begin);
  const std::size_t last = before(begin);
  if (fault_.inObject && at(last) == ',' && isDigit(whole[0]) && last > 0 && isDigit(text_[last - 1])) {
    return {"a number has a decimal point, not a comma; write . instead of ,", last};
  }
  return {wordText(whole, at(last)), begin};
}

std::string Diagnosis::wordText(std::string_view whole, char last) const {
  if (fault_.inObject && (last == '{' || last == ',')) {
    return "a key must be in double quotes; write " + quoted(whole);
  }
  if (last == '"' && isKeyBefore()) {
    return "a colon is missing before " + quoted(whole);
  }
  if (endsValue(last)) {
    return "a comma is missing before " + quoted(whole);
  }
  const std::string lower = lowerCase(whole.substr(isSign(whole[0]) ? 1 : 0));
  if (lower == "nan" || lower == "inf" || lower == "infinity") {
    return std::string(whole) + " is not a number in JSON; give a finite one";
  }
  for (const auto& [word, json] : foreignWords) {
    if (lower == word) {
      return std::string(whole) + " is not JSON; write " + std::string(json);
    }
  }
  if (isDigit(whole[0]) || isSign(whole[0]) || whole[0] == '.') {
    return quoted(whole) + " is not a number in JSON; write it like 0.5, -2 or 1e3";
  }
  return "a text must be in double quotes; write " + quoted(whole);
}

}  // namespace orvantis::toolkit
