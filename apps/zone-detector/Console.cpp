#include "Console.h"

#include <cerrno>

#include "text/Text.h"

namespace orvantis::app {

void Console::flush() const {
  if (out) {  // otherwise an earlier write failed, and errno has its reason
    errno = 0;
    out.flush();
  }
  if (!out) {
    const std::string reason = errno != 0 ? ": " + errorText(errno) : std::string();
    throw Failure("cannot write to the standard output" + reason);
  }
}

void Console::warn(const std::string& text) const {
  if (!quiet) {
    err << "zone-detector: warning: " << text << '\n';
  }
}

void Console::warn(const std::vector<std::string>& texts) const {
  for (const std::string& text : texts) {
    warn(text);
  }
}

std::string Console::bold(const std::string& text) const {
  return toolkit::bold(text, colour);
}

std::string Console::coloured(int number, const std::string& text) const {
  return colour ? "\033[3" + std::to_string(number) + "m" + text + "\033[0m" : text;
}

}  // namespace orvantis::app
