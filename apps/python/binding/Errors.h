#pragma once

#include "apps/python/binding/Module.h"

#include <string_view>

namespace korvana::python {

/// A text of a data file or a module, which may not be UTF-8: what is not is replaced, never refused.
[[nodiscard]] inline py::str text(std::string_view bytes) {
    PyObject* const decoded =
        PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "replace");
    if (decoded == nullptr) throw py::error_already_set();
    return py::reinterpret_steal<py::str>(decoded);
}

/// Makes an exception of the package (korvana._errors) the one that Python raises next.
void setError(const char* name, const py::tuple& arguments);

/// Raises an exception of the package.
template <class... Arguments>
[[noreturn]] void raise(const char* name, Arguments&&... arguments) {
    setError(name, py::make_tuple(std::forward<Arguments>(arguments)...));
    throw py::error_already_set();
}

} // namespace korvana::python
