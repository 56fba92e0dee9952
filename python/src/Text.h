#pragma once

#include <string>

#include "Bindings.h"
#include "text/Text.h"

namespace orvantis::python {

/// A text of the library for Python, whose texts are Unicode: a byte that is not UTF-8 becomes U+FFFD.
inline py::str textOf(const std::string& text) {
  return py::str(toolkit::toUtf8(text));
}

}  // namespace orvantis::python
