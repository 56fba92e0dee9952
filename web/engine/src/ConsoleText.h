#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "Console.h"

namespace orvantis::engine {

/// A console whose texts are kept: a page says what the command says.
class ConsoleText {
 public:
  const app::Console& console() const { return console_; }

  std::string text() const { return out_.str(); }
  /// What was warned of, one entry each, without the name of the command.
  std::vector<std::string> warnings() const;

 private:
  std::ostringstream out_;
  std::ostringstream err_;
  app::Console console_{out_, err_};
};

}  // namespace orvantis::engine
