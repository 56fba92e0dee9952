#pragma once

#include <cstddef>

#include <filter/classify/PointClassifier.h>

#include "Bindings.h"

namespace orvantis::python {

/// The package's `Counts`. @param total the number of points, no returns included
py::object countsOf(const filter::classify::ZoneCounts& counts, std::size_t total);

}  // namespace orvantis::python
