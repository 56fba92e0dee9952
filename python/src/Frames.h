#pragma once

#include <cstddef>
#include <optional>
#include <sstream>
#include <string>

#include "Console.h"
#include "TimeLine.h"

namespace orvantis::python {

/// The moments of a recording that lies in files, as the command reads them.
class Frames {
 public:
  /// A warning names the zones that are bound to a sensor which is not there.
  /// @throws toolkit::Failure
  Frames(const app::Recording& recording, const toolkit::Configuration& configuration)
      : timeLine_(recording, configuration, {told_, warnings_}) {}

  /// Without the interpreter's lock. The points are valid until the next call. @throws toolkit::Failure
  std::optional<app::Moment> next() { return timeLine_.next(); }
  std::optional<std::size_t> count() const { return timeLine_.cloudCount(); }
  const app::TimeLine& timeLine() const { return timeLine_; }
  /// What was warned of when it was opened, a line each.
  std::string warnings() const { return warnings_.str(); }

 private:
  std::ostringstream told_;
  std::ostringstream warnings_;
  app::TimeLine timeLine_;
};

}  // namespace orvantis::python
