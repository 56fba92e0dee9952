#pragma once

#include <memory>

#include "ClassifierCache.h"
#include "document/Configuration.h"

namespace orvantis::python {

/// What a Python `Site` holds. Used while the interpreter's lock is held; what goes on without it works on a
/// snapshot.
struct Site {
  std::shared_ptr<toolkit::Configuration> configuration = std::make_shared<toolkit::Configuration>();
  /// Of the zones as they were asked last.
  std::shared_ptr<ClassifierCache> cache = std::make_shared<ClassifierCache>();

  filter::detection::ZoneDetector& detector() const { return configuration->detector; }
};

}  // namespace orvantis::python
