#include "apps/python/binding/Data.h"
#include "apps/python/binding/Errors.h"
#include "apps/python/binding/Module.h"

#include "host/data/Codes.h"
#include "host/data/Describe.h"
#include "host/data/ReadData.h"

#include <memory>
#include <optional>
#include <string>

namespace korvana::python {
namespace {

DateOrder dateOrder(const std::string& order) {
    if (order == "dmy") return DateOrder::DayMonthYear;
    if (order == "mdy") return DateOrder::MonthDayYear;
    return DateOrder::YearMonthDay; // the package has checked it
}

/// A path as the system has it; `header` 1, 0, or -1 for automatic.
void readFile(Data& data, const py::bytes& path, const std::string& separator, const std::string& decimal,
              const std::string& dates, int header) {
    const Use use(*data.gate);
    ReadOptions options;
    if (header >= 0) options.header = header > 0 ? HeaderLine::Yes : HeaderLine::No;
    if (!separator.empty()) options.separator = separator.front();
    if (!decimal.empty()) options.decimalMark = decimal.front();
    if (!dates.empty()) options.dates = dateOrder(dates);
    std::optional<DataSet> read;
    const std::string file = path;
    {
        const py::gil_scoped_release others;
        read = readData(file, options);
    }
    data.active.open(std::move(*read));
}

const char* kindName(VariableKind kind) {
    switch (kind) {
    case VariableKind::Text:
        return "text";
    case VariableKind::Date:
        return "date";
    case VariableKind::Number:
        break;
    }
    return "number";
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
        .def("variables", variables)
        .def_property_readonly("path", [](const Data& data) { return text(data.active.dataSet().path()); })
        .def_property_readonly("cases", [](const Data& data) { return data.active.dataSet().caseCount(); });
}

} // namespace korvana::python
