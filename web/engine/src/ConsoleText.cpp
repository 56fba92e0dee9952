#include "ConsoleText.h"

#include <string_view>

namespace orvantis::engine {

std::vector<std::string> ConsoleText::warnings() const {
  constexpr std::string_view head = "zone-detector: warning: ";
  std::vector<std::string> lines;
  std::istringstream in(err_.str());
  for (std::string line; std::getline(in, line);) {
    lines.push_back(line.rfind(head, 0) == 0 ? line.substr(head.size()) : line);
  }
  return lines;
}

}  // namespace orvantis::engine
