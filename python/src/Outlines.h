#pragma once

#include <core/Planar.h>

#include "Bindings.h"

namespace orvantis::python {

/// The (N, 2) ring that a user gave, as the geometry of the library takes it.
core::PlanarPolygon outlineOf(const py::handle& footprint);

}  // namespace orvantis::python
