#pragma once

#include <pybind11/pybind11.h>

namespace orvantis::python {

namespace py = pybind11;

// The parts of the module; each is a file of that name.

void bindLog(py::module_& module);
void bindShapes(py::module_& module);
void bindZones(py::module_& module);
void bindLines(py::module_& module);
void bindSite(py::module_& module);
void bindDocument(py::module_& module);
void bindClassify(py::module_& module);
void bindSession(py::module_& module);
void bindFrames(py::module_& module);
void bindEvaluation(py::module_& module);
void bindDrawing(py::module_& module);

}  // namespace orvantis::python
