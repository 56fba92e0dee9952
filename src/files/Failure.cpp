#include "files/Failure.h"

#include "text/Text.h"

namespace orvantis::toolkit {

std::string Failure::textOf(const std::string& path, std::size_t line, std::size_t column,
                            const std::string& reason) {
  std::string text = printable(path);
  for (const std::size_t place : {line, column}) {
    if (place != 0) {
      text += ":" + std::to_string(place);
    }
  }
  return text.empty() ? reason : text + ": " + reason;
}

}  // namespace orvantis::toolkit
