#include "apps/python/binding/Data.h"
#include "apps/python/binding/Errors.h"
#include "apps/python/binding/Module.h"
#include "apps/python/binding/Results.h"
#include "apps/python/binding/Run.h"
#include "host/results/JoinedRuns.h"
#include "host/results/OutputFile.h"
#include "host/results/RecordedScript.h"

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace korvana::python {
namespace {

/// @param label   a str; None: stays
/// @param labels  of values, a dict of float and str; None: they stay
void describe(Data& data, const std::string& name, const py::object& label, const py::object& labels) {
    const Change change(*data.gate);
    const DataSet& set = data.active.dataSet();
    const int place = set.require(name);
    const Variable& variable = set.variable(place);
    std::vector<ValueLabel> texts = variable.valueLabels;
    if (!labels.is_none()) {
        texts.clear();
        for (const auto& [value, words] : labels.cast<py::dict>())
            texts.push_back({value.cast<double>(), words.cast<std::string>()});
    }
    data.active.describe(place, label.is_none() ? variable.label : label.cast<std::string>(),
                         variable.missingCode, std::move(texts));
}

/// Several books of one analysis, each with the name of its run.
Book joined(const py::list& named) {
    std::vector<NamedBook> books;
    for (const py::handle each : named) {
        const auto pair = each.cast<py::tuple>();
        const Book book = pair[1].cast<Book>();
        book.gate->check();
        books.push_back({pair[0].cast<std::string>(), *book.book});
        // What is about all of them repeats an estimation of one.
        if (books.back().name.empty()) books.back().book.iterations.clear();
    }
    return {std::make_shared<ResultsBook>(joinedRuns(std::move(books)))};
}

void record(Run& run, const py::bytes& target) {
    const Book book = run.results();
    book.gate->check();
    Session* const session = run.session();
    const std::filesystem::path path{std::string(target)};
    const std::string script = recordedScript(*book.book, {}, session != nullptr ? session->run() : nullptr);
    requireScriptFile(path);
    writeFile(path, script);
}

} // namespace

void requireScriptFile(const std::filesystem::path& file) {
    try {
        checkScriptFile(file, {});
    } catch (const std::runtime_error& error) {
        raise("UsageError", text(error.what()));
    }
}

void bindRecording(py::module_& module) {
    module.def("describe", describe);
    module.def("joined", joined);
    module.def("record", record);
}

} // namespace korvana::python
