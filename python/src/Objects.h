#pragma once

#include <vector>

#include <filter/monitor/TrackedObject.h>

#include "Bindings.h"
#include "recording/TrackReader.h"

namespace orvantis::python {

/// The tracked objects that a user gave: an array of OBJECT_DTYPE, a DataFrame of those columns or a list.
std::vector<filter::monitor::TrackedObject> objectsOf(const py::object& objects);

/// Objects of a file as an array of OBJECT_DTYPE.
py::object arrayOf(const std::vector<filter::monitor::TrackedObject>& objects,
                   const std::vector<toolkit::TrackBox>& boxes);

}  // namespace orvantis::python
