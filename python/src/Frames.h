#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "input/Recording.h"

namespace orvantis::python {

/// The moments of a recording that lies in files, as the command reads them.
class Frames {
 public:
  /// A warning names the zones that are bound to a sensor which is not there.
  /// @throws toolkit::Failure
  Frames(const toolkit::Recording& recording, const toolkit::Configuration& configuration)
      : timeLine_(toolkit::openTimeLine(recording, configuration, {keep(), keep()})) {}

  /// Without the interpreter's lock. The points are valid until the next call. @throws toolkit::Failure
  std::optional<toolkit::Moment> next() { return timeLine_.next(); }
  std::optional<std::size_t> count() const { return timeLine_.cloudCount(); }
  const toolkit::TimeLine& timeLine() const { return timeLine_; }
  /// What was warned of when it was opened, a line each.
  const std::string& warnings() const { return warnings_; }

 private:
  std::function<void(const std::string&)> keep() {
    return [this](const std::string& text) { warnings_ += text + "\n"; };
  }

  std::string warnings_;
  toolkit::TimeLine timeLine_;
};

}  // namespace orvantis::python
