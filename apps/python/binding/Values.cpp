#include "apps/python/binding/Values.h"

#include "apps/python/binding/Errors.h"
#include "support/Overloaded.h"

#include <limits>
#include <string>

namespace korvana::python {
namespace {

constexpr int deepest = 8; // of lists in lists: a list may contain itself

ozm::AutomationValue convert(const py::handle& value, int depth);

std::string typeOf(const py::handle& value) {
    return py::str(py::type::handle_of(value).attr("__name__"));
}

ozm::AutomationValue number(const py::handle& value) {
    const py::object whole = py::reinterpret_steal<py::object>(PyNumber_Index(value.ptr()));
    if (!whole) throw py::error_already_set();
    int overflow = 0;
    const long long wide = PyLong_AsLongLongAndOverflow(whole.ptr(), &overflow);
    if (overflow == 0 && wide >= std::numeric_limits<int>::min() && wide <= std::numeric_limits<int>::max())
        return static_cast<int>(wide);
    const double real = PyLong_AsDouble(whole.ptr());
    if (real == -1.0 && PyErr_Occurred() != nullptr) {
        PyErr_Clear();
        throw UnknownValue("the number is too large");
    }
    return real;
}

ozm::AutomationValue list(const py::handle& sequence, int depth) {
    if (depth == deepest) throw UnknownValue("a list of lists of lists goes too deep");
    const py::object items =
        py::reinterpret_steal<py::object>(PySequence_Fast(sequence.ptr(), "a list is expected"));
    if (!items) throw py::error_already_set();
    ozm::AutomationValue::List all;
    for (const py::handle item : items)
        all.push_back(convert(item, depth + 1));
    return all;
}

std::string utf8(const py::handle& value) {
    Py_ssize_t size = 0;
    const char* const bytes = PyUnicode_AsUTF8AndSize(value.ptr(), &size);
    if (bytes != nullptr) return {bytes, static_cast<std::size_t>(size)};
    PyErr_Clear();
    // Bytes that are not UTF-8, as Python has them in texts of files.
    const py::object escaped =
        py::reinterpret_steal<py::object>(PyUnicode_AsEncodedString(value.ptr(), "utf-8", "surrogateescape"));
    if (escaped) return py::reinterpret_borrow<py::bytes>(escaped);
    PyErr_Clear();
    throw UnknownValue("a text has characters that are none (surrogates)");
}

ozm::AutomationValue convert(const py::handle& value, int depth) {
    PyObject* const object = value.ptr();
    if (value.is_none()) return {};
    if (PyBool_Check(object)) return object == Py_True;
    if (PyUnicode_Check(object)) return utf8(value);
    if (PyFloat_Check(object)) return PyFloat_AS_DOUBLE(object);
    // Arrays, their scalars and columns of data frames become lists and numbers of Python.
    if (!PyLong_Check(object) && py::hasattr(value, "tolist")) {
        const py::object plain = value.attr("tolist")();
        if (plain.get_type().is(value.get_type())) throw UnknownValue("a value of type " + typeOf(value));
        return convert(plain, depth);
    }
    if (PyIndex_Check(object) != 0) return number(value);
    if (PySequence_Check(object) != 0 && !PyBytes_Check(object) && !PyByteArray_Check(object))
        return list(value, depth);
    throw UnknownValue("a value of type '" + typeOf(value) + "' is none that a dialog takes");
}

} // namespace

ozm::AutomationValue toAutomation(const py::handle& value) {
    return convert(value, 0);
}

py::object toPython(const ozm::AutomationValue& value) {
    return std::visit(ozm::Overloaded{
                          [](std::monostate) -> py::object { return py::none(); },
                          [](bool flag) -> py::object { return py::bool_(flag); },
                          [](int whole) -> py::object { return py::int_(whole); },
                          [](double real) -> py::object { return py::float_(real); },
                          [](const std::string& words) -> py::object { return text(words); },
                          [](const ozm::AutomationValue::List& values) -> py::object {
                              py::list all;
                              for (const ozm::AutomationValue& each : values)
                                  all.append(toPython(each));
                              return all;
                          },
                          [](const ozm::AutomationReference& reference) -> py::object {
                              return py::make_tuple(text(reference.type), text(reference.name));
                          },
                      },
                      value.value);
}

} // namespace korvana::python
