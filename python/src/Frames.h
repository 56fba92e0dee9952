#pragma once

#include <optional>

#include "TimeLine.h"

namespace orvantis::python {

/// The moments of a recording that lies in files, as the command reads them.
class Frames {
 public:
  explicit Frames(const app::Recording& recording) : timeLine_(recording) {}

  /// Without the interpreter's lock. The points are valid until the next call. @throws toolkit::Failure
  std::optional<app::Moment> next() { return timeLine_.next(); }
  std::optional<std::size_t> count() const { return timeLine_.cloudCount(); }
  const app::TimeLine& timeLine() const { return timeLine_; }

 private:
  app::TimeLine timeLine_;
};

}  // namespace orvantis::python
