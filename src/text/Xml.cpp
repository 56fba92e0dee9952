#include "text/Xml.h"

#include "text/Text.h"

namespace orvantis::toolkit {

std::string xmlEscaped(std::string_view text) {
  std::string result;
  for (const char c : printable(text)) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

}  // namespace orvantis::toolkit
