#pragma once

#include "apps/python/binding/Module.h"

#include <cstddef>
#include <string_view>

namespace korvana::python {

/// What a function of the interpreter made; raises what it raised, such as MemoryError.
template <class T = py::object>
[[nodiscard]] T made(PyObject* object) {
    if (object == nullptr) throw py::error_already_set();
    return py::reinterpret_steal<T>(object);
}

/// A list of so many places, which are filled next.
[[nodiscard]] inline py::list listOf(std::size_t size) {
    return made<py::list>(PyList_New(static_cast<Py_ssize_t>(size)));
}

/// A text of a data file or a module, which may not be UTF-8: what is not is replaced, never refused.
[[nodiscard]] inline py::str text(std::string_view bytes) {
    return made<py::str>(
        PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "replace"));
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
