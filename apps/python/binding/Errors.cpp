#include "apps/python/binding/Errors.h"

#include "host/data/DataError.h"
#include "host/data/Expression.h"

#include <exception>
#include <stdexcept>

namespace korvana::python {
namespace {

void translate(std::exception_ptr fault) {
    try {
        if (fault) std::rethrow_exception(std::move(fault));
    } catch (const DataError& error) {
        setError("DataError",
                 py::make_tuple(text(error.what()), text(error.file()), error.line(), error.column()));
    } catch (const ExpressionError& error) {
        setError("DataError", py::make_tuple(text(error.what())));
    } catch (const py::builtin_exception&) {
        throw; // a KeyError, an IndexError and so on, as they are
    } catch (
        const std::runtime_error& error) { // a file that cannot be written, a module that cannot be loaded
        setError("Error", py::make_tuple(text(error.what())));
    }
}

} // namespace

void setError(const char* name, const py::tuple& arguments) {
    const py::object type = py::module_::import("korvana._errors").attr(name);
    const py::object error = type(*arguments);
    PyErr_SetObject(type.ptr(), error.ptr());
}

void bindErrors(py::module_& /*module*/) {
    py::register_local_exception_translator(translate);
}

} // namespace korvana::python
