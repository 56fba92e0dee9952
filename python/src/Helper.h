#pragma once

#include <string>
#include <vector>

#include <filter/detection/Point.h>

#include "Bindings.h"

namespace orvantis::python {

/// What a module of the package holds under that name. Looked up each time: nothing of the interpreter is
/// kept, so nothing is left to be freed when it ends.
inline py::object helper(const char* module, const char* name) {
  return py::module_::import(module).attr(name);
}

/// The (N, 2) vertices that a user gave, whatever array or list they are in.
/// @param what names them in the error
std::vector<filter::detection::Point> ringOf(const py::handle& vertices, const char* what);

/// The (x, y) that a user gave.
filter::detection::Point pointOf(const py::handle& pair, const char* what);

/// A new array (N, 2).
py::object arrayOf(const std::vector<filter::detection::Point>& points);

/// Whether the two numbers are the same for a user: NaN is the same as NaN.
inline bool same(double a, double b) {
  return a == b || (a != a && b != b);
}

}  // namespace orvantis::python
