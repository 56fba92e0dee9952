#pragma once

#include "Bindings.h"
#include "session/SessionOptions.h"

namespace orvantis::python {

/// The options of a session as a user gives them; the session itself checks them.
/// @param forgetAfter in seconds, or a duration of datetime or numpy
toolkit::SessionOptions optionsOf(const py::object& forgetAfter, double clearance, double maxSpeed);

}  // namespace orvantis::python
