#include "apps/python/binding/Data.h"
#include "apps/python/binding/Errors.h"
#include "apps/python/binding/Module.h"

#include "apps/python/binding/Interrupts.h"
#include "host/data/Codes.h"
#include "host/data/Describe.h"
#include "host/data/ReadData.h"

#include <functional>
#include <limits>
#include <memory>
#include <stop_token>
#include <string>

namespace korvana::python {
namespace {

DateOrder dateOrder(const std::string& order) {
    if (order == "dmy") return DateOrder::DayMonthYear;
    if (order == "mdy") return DateOrder::MonthDayYear;
    return DateOrder::YearMonthDay; // the package has checked it
}

/// Work on the data that Ctrl-C can stop.
void work(const std::function<void(const std::stop_token&)>& work) {
    if (!workInterruptibly(work)) throw py::error_already_set();
}

/// A path as the system has it; `header` 1, 0, or -1 for automatic.
void readFile(Data& data, const py::bytes& path, const std::string& separator, const std::string& decimal,
              const std::string& dates, int header) {
    const Change change(*data.gate);
    ReadOptions options;
    if (header >= 0) options.header = header > 0 ? HeaderLine::Yes : HeaderLine::No;
    if (!separator.empty()) options.separator = separator.front();
    if (!decimal.empty()) options.decimalMark = decimal.front();
    if (!dates.empty()) options.dates = dateOrder(dates);
    const std::string file = path;
    work([&](const std::stop_token& stop) {
        options.stop = stop;
        data.active.open(readData(file, options));
    });
}

void define(Data& data, const std::string& name, const std::string& expression) {
    const Change change(*data.gate);
    work([&](const std::stop_token& stop) {
        data.active.define(computeVariable(data.active.dataSet(), {name, expression}, stop));
    });
}

/// An empty condition takes all cases.
void select(Data& data, const std::string& condition) {
    constexpr std::size_t piece = 1U << 16U;
    const Change change(*data.gate);
    if (condition.empty()) return data.active.select(condition);
    work([&](const std::stop_token& stop) {
        const DataSet& set = data.active.dataSet();
        SelectionPass pass(set, condition);
        while (pass.advance(piece))
            if (stop.stop_requested()) return;
        if (pass.selection().selectedCount == 0 && set.caseCount() > 0)
            throw DataError("the condition '" + condition + "' holds for none of the " +
                            std::to_string(set.caseCount()) + " cases; the selection stays as it was");
        data.active.select(condition, pass.take());
    });
}

/// @param code  a number or a text
void setMissing(Data& data, const std::string& name, const py::object& code) {
    const Change change(*data.gate);
    const DataSet& set = data.active.dataSet();
    const int place = set.require(name);
    const Variable& variable = set.variable(place);
    double value = std::numeric_limits<double>::quiet_NaN();
    if (py::isinstance<py::str>(code)) {
        const auto found = resolveCode(set, place, code.cast<std::string>());
        if (!found)
            throw DataError("'" + code.cast<std::string>() + "' is neither a number nor a value label of '" +
                            variable.name + "', which has " + fewCodesText(set, place));
        value = *found;
    } else if (!code.is_none()) {
        value = code.cast<double>();
    }
    data.active.describe(place, variable.label, value, variable.valueLabels);
}

py::list variables(Data& data) {
    const Use use(*data.gate);
    py::list all;
    const DataSet& set = data.active.dataSet();
    for (int i = 0; i < set.variableCount(); ++i) {
        const Variable& variable = set.variable(i);
        py::dict labels;
        for (const ValueLabel& label : variable.valueLabels)
            labels[py::float_(label.value)] = text(label.text);
        all.append(py::make_tuple(text(variable.name), kindName(variable.kind), text(variable.label), labels,
                                  variable.missingCode, text(variable.expression)));
    }
    return all;
}

} // namespace

void bindApplication(py::module_& module) {
    py::class_<Data, std::shared_ptr<Data>>(module, "Data")
        .def(py::init<>())
        .def("read", readFile)
        .def("define", define)
        .def("select", select)
        .def("weight",
             [](Data& data, const std::string& variable) {
                 const Change change(*data.gate);
                 data.active.weightBy(variable);
             })
        .def("missing", setMissing)
        .def("clear",
             [](Data& data) {
                 const Change change(*data.gate);
                 data.active.open(DataSet{std::string{}, 0});
             })
        .def("check", [](const Data& data) { data.gate->check(); })
        .def("variables", variables)
        .def_property_readonly("notes",
                               [](const Data& data) {
                                   const Use use(*data.gate);
                                   py::list all;
                                   for (const std::string& note : data.active.notes())
                                       all.append(text(note));
                                   return all;
                               })
        .def_property_readonly("path",
                               [](const Data& data) {
                                   const Use use(*data.gate);
                                   return text(data.active.dataSet().path());
                               })
        .def_property_readonly("cases", [](const Data& data) {
            const Use use(*data.gate);
            return data.active.dataSet().caseCount();
        });
}

} // namespace korvana::python
