#pragma once

#include <pybind11/pybind11.h>

namespace korvana::python {

namespace py = pybind11;

// One function per file of the binding, each of which adds its classes and functions to the extension. What
// they have is for the package beside it, which gives it the shape that users see.
void bindErrors(py::module_& module);
void bindLibrary(py::module_& module);
void bindApplication(py::module_& module);
void bindFrames(py::module_& module);
void bindRecording(py::module_& module);
void bindResults(py::module_& module);
void bindRun(py::module_& module);
void bindFunctions(py::module_& module);

} // namespace korvana::python
