#include "apps/python/binding/Results.h"

#include "apps/python/binding/Errors.h"
#include "apps/python/binding/Interrupts.h"
#include "host/results/ChartDrawing.h"
#include "host/results/HtmlTable.h"
#include "host/results/TextWriter.h"
#include "host/results/WriteOutput.h"
#include "host/results/WritingWatch.h"
#include "support/Overloaded.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <variant>

namespace korvana::python {
namespace {

/// Numbers of an output, which Python reads where they are: numpy.asarray takes them without a copy.
struct Numbers {
    std::shared_ptr<const ResultsBook> keeper;
    const void* first;
    std::size_t count;
    bool whole;
};

Numbers numbers(const Output& output, const std::vector<double>& values) {
    return {output.of.book, values.data(), values.size(), false};
}

py::buffer_info bufferOf(const Numbers& numbers) {
    static constexpr double none = 0.0; // an empty buffer has a place as well
    const void* const first = numbers.count > 0 ? numbers.first : &none;
    const auto size = numbers.whole ? sizeof(std::int32_t) : sizeof(double);
    return {const_cast<void*>(first), // NOLINT: marked as one that is only read
            static_cast<py::ssize_t>(size),
            numbers.whole ? py::format_descriptor<std::int32_t>::format()
                          : py::format_descriptor<double>::format(),
            1,
            {static_cast<py::ssize_t>(numbers.count)},
            {static_cast<py::ssize_t>(size)},
            true};
}

py::object cellOf(const Spreadsheet& sheet, std::size_t row, std::size_t column) {
    const Spreadsheet::Cell cell = sheet.cell(row, column);
    switch (cell.kind) {
    case Spreadsheet::Cell::Kind::Number:
        return made(PyFloat_FromDouble(cell.number));
    case Spreadsheet::Cell::Kind::Integer:
        return made(PyLong_FromLong(cell.integer));
    case Spreadsheet::Cell::Kind::Text:
        if (cell.text.empty()) break;
        return text(cell.text);
    case Spreadsheet::Cell::Kind::Empty:
        break;
    }
    return py::none();
}

py::list texts(const std::vector<std::string>& all) {
    py::list list = listOf(all.size());
    for (std::size_t i = 0; i < all.size(); ++i)
        list[i] = text(all[i]);
    return list;
}

py::list cells(const Output& output) {
    const auto& sheet = output.as<Spreadsheet>();
    const std::size_t rows = sheet.rowCount();
    py::list all = listOf(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        py::list cells = listOf(sheet.columns.size());
        for (std::size_t column = 0; column < sheet.columns.size(); ++column)
            cells[column] = cellOf(sheet, row, column);
        all[row] = std::move(cells);
        if (row % 4096 == 0 && PyErr_CheckSignals() != 0) throw py::error_already_set();
    }
    return all;
}

/// A buffer where the column is one of numbers, else a list.
py::object column(const Output& output, std::size_t place) {
    const auto& sheet = output.as<Spreadsheet>();
    const Spreadsheet::Column& wanted = sheet.columns.at(place);
    const std::size_t rows = sheet.rowCount();
    if (wanted.size() == rows) {
        if (const auto* reals = std::get_if<std::vector<double>>(&wanted.cells))
            return py::cast(numbers(output, *reals));
        if (const auto* wholes = std::get_if<std::vector<std::int32_t>>(&wanted.cells))
            return py::cast(Numbers{output.of.book, wholes->data(), wholes->size(), true});
    }
    py::list all = listOf(rows);
    for (std::size_t row = 0; row < rows; ++row)
        all[row] = cellOf(sheet, row, place);
    return all;
}

py::list columns(const Output& output) {
    py::list all;
    for (const Spreadsheet::Column& column : output.as<Spreadsheet>().columns)
        all.append(py::make_tuple(text(column.readableHeading()), text(column.id)));
    return all;
}

const char* styleName(ozm::ChartSeries::Style style) {
    switch (style) {
    case ozm::ChartSeries::Style::Step:
        return "step";
    case ozm::ChartSeries::Style::Markers:
        return "markers";
    case ozm::ChartSeries::Style::Histogram:
        return "histogram";
    case ozm::ChartSeries::Style::Line:
        break;
    }
    return "line";
}

const char* roleName(ozm::ChartSeries::Role role) {
    switch (role) {
    case ozm::ChartSeries::Role::LowerBound:
        return "lower";
    case ozm::ChartSeries::Role::UpperBound:
        return "upper";
    case ozm::ChartSeries::Role::Observed:
        return "observed";
    case ozm::ChartSeries::Role::Censored:
        return "censored";
    case ozm::ChartSeries::Role::Estimate:
        break;
    }
    return "estimate";
}

py::list series(const Output& output) {
    py::list all;
    for (const ozm::ChartSeries& one : output.as<Chart>().info.series)
        all.append(py::make_tuple(text(one.legend), numbers(output, one.x), numbers(output, one.y),
                                  styleName(one.style), roleName(one.role)));
    return all;
}

/// @param prefix  of the identifiers, for a picture inside a page; empty for a file
py::str picture(const Output& output, const std::string& prefix) {
    const Use use(*output.of.gate);
    const ozm::CChartInfo& info = output.as<Chart>().info;
    Picture drawn;
    {
        const py::gil_scoped_release others;
        drawn = drawChart(info, PictureFormat::Svg, {prefix});
    }
    if (PyErr_CheckSignals() != 0) throw py::error_already_set(); // Ctrl-C ends the drawing, too
    if (!drawn.drawn()) raise("Error", text("the chart cannot be drawn: " + drawn.error));
    return text(drawn.bytes);
}

const char* kindOf(const Output& output) {
    constexpr std::array<const char*, 3> kinds{"report", "table", "chart"};
    return kinds.at(output.get().index());
}

py::str titleOf(const Output& output) {
    return std::visit(ozm::Overloaded{[](const Chart& chart) { return text(chart.info.title); },
                                      [](const auto& other) { return text(other.title); }},
                      output.get());
}

/// The format that a file's name ends with, among those of what is saved. Raises UsageError.
OutputFormat formatOf(const std::string& ending, const std::vector<OutputFormat>& known, const char* what) {
    const auto wanted =
        std::find_if(known.begin(), known.end(), [&](OutputFormat each) { return endingOf(each) == ending; });
    if (wanted != known.end()) return *wanted;
    std::string list;
    for (const OutputFormat each : known)
        list.append(list.empty() ? "." : ", .").append(endingOf(each));
    raise("UsageError", std::string(what) + " can be saved as a file whose name ends with one of " + list +
                            (ending.empty() ? "" : ", not with ." + ending));
}

void write(const std::function<void()>& writing) {
    if (!workInterruptibly([&](const std::stop_token& stop) {
            const WritingWatch watch(stop);
            writing();
        }))
        throw py::error_already_set();
}

/// @param target  bytes
void save(const Output& output, const std::string& ending, const py::bytes& target) {
    const Use use(*output.of.gate);
    const std::filesystem::path path{std::string(target)};
    const std::string what = std::string("a ") + kindOf(output);
    const OutputFormat format = formatOf(ending, formatsOf(output.get()), what.c_str());
    write([&] { writeOutput(*output.of.book, output.place, nullptr, format, path); });
}

/// The whole book in one file.
void saveInOne(const Book& book, const std::string& ending, const py::bytes& target) {
    using enum OutputFormat;
    const Use use(*book.gate);
    const std::filesystem::path path{std::string(target)};
    const OutputFormat format = formatOf(ending, {Json, Txt, Html, Xlsx, Py}, "several results");
    if (format == Py) requireScriptFile(path);
    write([&] { writeOneFile(*book.book, format, path); });
}

/// Paths of the files, as bytes, and what could not be drawn.
py::tuple saveAll(const Book& book, const py::bytes& directory, const std::string& formats, bool replace) {
    const Use use(*book.gate);
    const std::filesystem::path path{std::string(directory)};
    FormatSet wanted;
    try {
        wanted = parseFormats(formats);
    } catch (const std::invalid_argument& error) {
        raise("UsageError", text(error.what()));
    }
    std::vector<std::filesystem::path> files;
    std::vector<std::string> problems;
    write([&] {
        files = writeBook(*book.book, path, wanted, &problems,
                          replace ? OthersFiles::Replaced : OthersFiles::Kept);
    });
    py::list names;
    for (const std::filesystem::path& file : files)
        names.append(py::bytes(file.string()));
    return py::make_tuple(names, texts(problems));
}

/// A book of some outputs of another, with what is said about all of them.
Book part(const Book& book, const py::list& places) {
    book.gate->check();
    auto one = std::make_shared<ResultsBook>();
    one->analysis = book.book->analysis;
    one->status = book.book->status;
    one->source = book.book->source;
    one->messages = book.book->messages;
    one->notes = book.book->notes;
    for (const py::handle place : places)
        one->outputs.push_back(book.book->outputs.at(place.cast<std::size_t>()));
    return {std::move(one), book.gate};
}

/// The first rows of a table, as a table.
Spreadsheet head(const Spreadsheet& sheet, std::size_t rows) {
    Spreadsheet first;
    first.title = sheet.title;
    first.notes = sheet.notes;
    first.footnotes = sheet.footnotes;
    const auto cut = [rows](const auto& all) {
        using List = std::decay_t<decltype(all)>;
        return List(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(std::min(rows, all.size())));
    };
    first.rowHeadings = cut(sheet.rowHeadings);
    for (const Spreadsheet::Column& column : sheet.columns) {
        Spreadsheet::Column& begun = first.columns.emplace_back();
        begun.heading1 = column.heading1;
        begun.heading2 = column.heading2;
        begun.format = column.format;
        if (const auto* words = std::get_if<Spreadsheet::Dictionary>(&column.cells))
            begun.cells = Spreadsheet::Dictionary{cut(words->index), words->texts};
        else
            std::visit(ozm::Overloaded{[](const Spreadsheet::Dictionary&) {},
                                       [&](const auto& all) { begun.cells = cut(all); }},
                       column.cells);
    }
    return first;
}

py::str sheetText(const Output& output, std::size_t mostRows) {
    std::ostringstream out;
    const auto& sheet = output.as<Spreadsheet>();
    if (sheet.rowCount() > mostRows)
        writeText(head(sheet, mostRows), out);
    else
        writeText(sheet, out);
    return text(out.str());
}

py::str sheetHtml(const Output& output, std::size_t mostRows, const std::string& rest) {
    std::ostringstream out;
    writeHtmlFragment(output.as<Spreadsheet>(), out, mostRows, rest);
    return text(out.str());
}

void bindOutput(py::module_& module) {
    py::class_<Output>(module, "Output")
        .def_property_readonly("kind", kindOf)
        .def_property_readonly("title", titleOf)
        .def_property_readonly("place", [](const Output& output) { return output.place; })
        .def_property_readonly("book", [](const Output& output) { return output.of; })
        .def("save", save)
        // of a report
        .def("lines", [](const Output& output) { return texts(output.as<Report>().lines); })
        // of a table
        .def("notes",
             [](const Output& output) {
                 const auto& sheet = output.as<Spreadsheet>();
                 return texts(sheet.notes) + texts(sheet.footnotes);
             })
        .def("rows", [](const Output& output) { return output.as<Spreadsheet>().rowCount(); })
        .def("row_headings", [](const Output& output) { return texts(output.as<Spreadsheet>().rowHeadings); })
        .def("columns", columns)
        .def("column", column)
        .def("cells", cells)
        .def("text", sheetText)
        .def("html", sheetHtml)
        // of a chart
        .def("axes",
             [](const Output& output) {
                 const ozm::CChartInfo& info = output.as<Chart>().info;
                 return py::make_tuple(text(info.xAxis.title), text(info.yAxis.title));
             })
        .def("chart_notes", [](const Output& output) { return texts(output.as<Chart>().info.notes); })
        .def("series", series)
        .def("picture", picture);
}

void bindBook(py::module_& module) {
    py::class_<Book>(module, "Book")
        .def_property_readonly("analysis", [](const Book& book) { return text(book.book->analysis); })
        .def_property_readonly("source", [](const Book& book) { return text(book.book->source); })
        .def_property_readonly("notes",
                               [](const Book& book) {
                                   book.gate->check();
                                   return texts(book.book->notes);
                               })
        .def_property_readonly("iterations",
                               [](const Book& book) {
                                   book.gate->check();
                                   return texts(book.book->iterations);
                               })
        .def_property_readonly("messages",
                               [](const Book& book) {
                                   book.gate->check();
                                   py::list all;
                                   for (const ResultMessage& message : book.book->messages)
                                       all.append(messageTuple(message));
                                   return all;
                               })
        .def("outputs",
             [](const Book& book) {
                 book.gate->check();
                 py::list all;
                 for (std::size_t place = 0; place < book.book->outputs.size(); ++place)
                     all.append(Output{book, place});
                 return all;
             })
        .def("ids",
             [](const Book& book) {
                 book.gate->check();
                 return texts(outputIds(*book.book));
             })
        .def("part", part)
        .def("save", saveAll)
        .def("save_in_one", saveInOne);
}

} // namespace

py::tuple messageTuple(const ResultMessage& message) {
    const char* const severity = message.severity == ResultMessage::Severity::Error     ? "error"
                                 : message.severity == ResultMessage::Severity::Warning ? "warning"
                                                                                        : "note";
    return py::make_tuple(message.id, severity, text(message.text), text(message.detail));
}

void bindResults(py::module_& module) {
    py::class_<Numbers>(module, "Numbers", py::buffer_protocol()).def_buffer(bufferOf);
    bindOutput(module);
    bindBook(module);
}

} // namespace korvana::python
