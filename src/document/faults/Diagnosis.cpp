#include "document/faults/Diagnosis.h"

#include <algorithm>

#include <settings/SettingsManager.h>

#include "text/LowerCase.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

using Reason = SyntaxFault::Reason;

constexpr std::string_view blanks = " \t\r\n";

bool isUtf16(std::string_view text) {
  return text.substr(0, 2) == "\xFE\xFF" || text.substr(0, 2) == "\xFF\xFE" ||
         (text.size() > 3 && ((text[0] == '\0' && text[2] == '\0') || (text[1] == '\0' && text[3] == '\0')));
}

bool isBinary(std::string_view text) {
  return text.find('\0') != std::string_view::npos ||
         (!text.empty() && static_cast<unsigned char>(text[0]) < 0x20U &&
          blanks.find(text[0]) == std::string_view::npos);
}

std::string hex(char c) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  return std::string("0x") + digits[byte >> 4U] + digits[byte & 0x0FU];
}

}  // namespace

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isWordPart(char c) {
  const char lower = lowerCase(c);
  return (lower >= 'a' && lower <= 'z') || isDigit(c) || c == '_' || c == '+' || c == '-' || c == '.';
}

bool endsValue(char c) {
  return c == '"' || c == '}' || c == ']' || isWordPart(c);
}

Diagnosis::Diagnosis(const SyntaxFault& fault, std::string_view text)
    : fault_(fault), text_(text), at_(std::min(fault.offset, text.size())), previous_(before(at_)) {}

Diagnosis::Cause Diagnosis::find() const {
  if (isUtf16(text_)) {
    return {"the text is UTF-16; save it as UTF-8", 0, false};
  }
  if (isBinary(text_)) {
    return {"this is binary data, not text; give a JSON document", 0, false};
  }
  if (const std::size_t valid = validUtf8(text_); valid < text_.size() && valid <= at_) {
    return {"the byte " + hex(text_[valid]) + " is not UTF-8; save the file as UTF-8", valid};
  }
  switch (fault_.reason) {
    case Reason::CutOff:
      return cutOff();
    case Reason::TooDeep:
      return here("nested deeper than " + std::to_string(SettingsManager::MAX_DEPTH) + " levels");
    case Reason::TextAfterwards:
      return textAfterwards();
    case Reason::Syntax:
      break;
  }
  return isInText() ? inText() : betweenTexts();
}

Diagnosis::Cause Diagnosis::cutOff() const {
  if (previous_ == std::string_view::npos) {
    return {"the document is empty; it has to begin with \"{\"", 0, false};
  }
  std::string text = "the document ends too early";
  if (isInText()) {
    text += ": a text is not closed with a quote";
  } else if (fault_.open) {
    text += std::string(": the \"") + (fault_.inObject ? "{" : "[") + "\" of line " +
            std::to_string(fault_.open->line) + ", column " + std::to_string(fault_.open->column) +
            " is not closed";
  }
  return {text, previous_ + 1};
}

Diagnosis::Cause Diagnosis::textAfterwards() const {
  const char c = current();
  if (c == '}' || c == ']') {
    return here(std::string("a \"") + c + "\" too many; remove it");
  }
  return here("text follows after the end of the document; remove it");
}

std::size_t Diagnosis::before(std::size_t offset) const {
  return offset == 0 ? std::string_view::npos : text_.find_last_not_of(blanks, offset - 1);
}

bool Diagnosis::isInText() const {
  bool inside = false;
  for (std::size_t i = 0; i < at_; ++i) {
    if (inside && text_[i] == '\\') {
      ++i;
    } else if (text_[i] == '"') {
      inside = !inside;
    }
  }
  return inside;
}

bool Diagnosis::isKeyBefore() const {
  std::size_t begin = 0;
  bool inside = false;
  for (std::size_t i = 0; i < at_; ++i) {
    if (inside && text_[i] == '\\') {
      ++i;
    } else if (text_[i] == '"') {
      inside = !inside;
      begin = inside ? i : begin;
    }
  }
  const char last = at(before(begin));
  return fault_.inObject && (last == '{' || last == ',');
}

}  // namespace orvantis::toolkit
