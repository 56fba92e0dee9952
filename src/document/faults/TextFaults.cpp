#include "document/checks/Report.h"
#include "document/faults/Diagnosis.h"

namespace orvantis::toolkit {

Diagnosis::Cause Diagnosis::inText() const {
  const char c = current();
  if (c == '\n' || c == '\r') {
    return here("a text has to end in its line; close it with a quote");
  }
  if (c == '\t') {
    return here("a tab cannot stand in a text; write \\t");
  }
  if (static_cast<unsigned char>(c) < 0x20U) {
    return here("a control character cannot stand in a text; remove it");
  }
  return escape();
}

// The fault is neither a control character nor another encoding, so it is a backslash with wrong bytes after
// it. The parser stops at one of these bytes.
Diagnosis::Cause Diagnosis::escape() const {
  const std::size_t backslash = text_.rfind('\\', at_);
  if (backslash == std::string_view::npos) {
    return here("this cannot stand in a text; remove it");
  }
  const std::string_view start = text_.substr(backslash, 2);
  return {start == "\\u" ? "\\u needs four hexadecimal digits, and a pair of them beyond U+FFFF"
                         : quoted(start) + " is not an escape; write \\\\ for a backslash",
          backslash};
}

}  // namespace orvantis::toolkit
