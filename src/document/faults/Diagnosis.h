#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "document/LocatedJson.h"

namespace orvantis::toolkit {

/// Finds out why a text is not JSON. The text before the fault is valid, so it can be read again in a simple
/// way.
class Diagnosis {
 public:
  /// What is wrong, and the byte to show.
  struct Cause {
    std::string text;
    std::size_t offset;
    bool canBeShown = true;
  };

  Diagnosis(const SyntaxFault& fault, std::string_view text);

  Cause find() const;

 private:
  // A fault of the whole text.
  Cause cutOff() const;
  Cause textAfterwards() const;
  // A fault inside of double quotes.
  Cause inText() const;
  Cause escape() const;
  // A fault outside of double quotes.
  Cause betweenTexts() const;
  Cause foreignCharacter() const;
  Cause mark() const;
  Cause word() const;
  std::string wordText(std::string_view whole, char last) const;
  bool isAfterBrokenWord() const;
  // The begin of the word that the fault is in or follows.
  std::size_t wordBegin() const;

  Cause here(std::string text) const { return {std::move(text), at_}; }
  std::string_view rest() const { return text_.substr(at_); }
  char current() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  char at(std::size_t offset) const { return offset < text_.size() ? text_[offset] : '\0'; }
  // The last byte before this one that is not a blank; std::string_view::npos when there is none.
  std::size_t before(std::size_t offset) const;
  // Whether the fault is inside of double quotes.
  bool isInText() const;
  // Whether the last text before the fault is a key: it follows a brace or a comma of an object.
  bool isKeyBefore() const;

  const SyntaxFault& fault_;
  std::string_view text_;
  std::size_t at_;
  std::size_t previous_;
};

/// Whether the byte is a part of words and numbers.
bool isWordPart(char c);
bool isDigit(char c);
/// Whether a value may end with the byte.
bool endsValue(char c);

}  // namespace orvantis::toolkit
