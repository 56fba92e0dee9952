#pragma once

#include <filter/monitor/Stamp.h>

#include "Bindings.h"

namespace orvantis::python {

/// The stamp or the duration that a user gave: a number is seconds, and means what its shortest decimal text
/// says, as the same number in a file does; the types of datetime and numpy count exactly.
filter::monitor::Stamp stampOf(const py::handle& stamp);

}  // namespace orvantis::python
