#include "document/checks/Report.h"
#include "document/faults/Diagnosis.h"

namespace orvantis::toolkit {

Diagnosis::Cause Diagnosis::betweenTexts() const {
  const char c = current();
  if (c == '#' || rest().substr(0, 2) == "//" || rest().substr(0, 2) == "/*") {
    return here("JSON has no comments; remove it");
  }
  if (c == '\'' || c == '`') {
    return here("a text must be in double quotes; write \" instead of " + std::string(1, c));
  }
  if (static_cast<unsigned char>(c) >= 0x80U) {
    return foreignCharacter();
  }
  if (!fault_.open) {
    return here("the document has to begin with \"{\"");
  }
  if (isWordPart(c) || isAfterBrokenWord()) {
    return word();
  }
  if (c == '=') {
    return here("a colon must separate a key and its value; write : instead of =");
  }
  return mark();
}

Diagnosis::Cause Diagnosis::foreignCharacter() const {
  for (const std::string_view quote :
       {"\u201C", "\u201D", "\u201E", "\u2018", "\u2019", "\u00AB", "\u00BB"}) {
    if (rest().substr(0, quote.size()) == quote) {
      return here("a text must be in double quotes; write \" instead of " + std::string(quote));
    }
  }
  if (rest().substr(0, 2) == "\u00A0") {
    return here("a no-break space stands between values; write a plain one");
  }
  return here("this character cannot stand between values; remove it");
}

// A bracket, a comma, a colon or a quote in the wrong place.
Diagnosis::Cause Diagnosis::mark() const {
  const char c = current();
  const char last = at(previous_);
  const bool closes = c == '}' || c == ']';
  if (last == ',' && closes) {
    return {std::string("a comma stands before \"") + c + "\"; remove the comma", previous_};
  }
  if (c == ',' && (last == ',' || last == '{' || last == '[')) {
    return here("a comma too many; remove it");
  }
  if (last == ':' && (closes || c == ',')) {
    return here("a value is missing after the colon");
  }
  if (c == ':' && !fault_.inObject) {
    return here("a key cannot stand in a list; put it in { }");
  }
  if (closes && (c == '}') != fault_.inObject) {
    return here(std::string("a \"") + (fault_.inObject ? "}" : "]") + "\" is missing before this \"" + c +
                "\"");
  }
  if (last == '"' && isKeyBefore()) {
    return here("a colon and a value are missing after the key");
  }
  if ((c == '"' || c == '{' || c == '[') && endsValue(last)) {
    return {"a comma is missing after this value", previous_};
  }
  if (fault_.inObject && (c == '{' || c == '[')) {
    return here("a key is missing before this value");
  }
  return here(quoted(std::string(1, c)) + " cannot stand here; remove it");
}

}  // namespace orvantis::toolkit
