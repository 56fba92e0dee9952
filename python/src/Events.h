#pragma once

#include "Bindings.h"
#include "session/Session.h"
#include "text/Record.h"

namespace orvantis::python {

/// A record as a dict by its keys in JSON; times are whole nanoseconds.
py::dict dictOf(const toolkit::Record& record);

/// The package's object for an event.
py::object eventOf(filter::monitor::Stamp stamp, const toolkit::Event& event);

}  // namespace orvantis::python
