#include "host/results/JsonWriter.h"

#include <array>
#include <string>
#include <string_view>

#include "host/results/JsonOrigin.h"
#include "host/results/JsonText.h"

namespace korvana {
namespace {

constexpr std::array<std::string_view, 3> severityNames{"note", "warning", "error"};
constexpr std::array<std::string_view, 4> kindNames{"line", "step", "scatter", "histogram"};
constexpr std::array<std::string_view, 4> styleNames{"line", "step", "markers", "histogram"};
constexpr std::array<std::string_view, 5> roleNames{"estimate", "lower", "upper", "observed", "censored"};

template <std::size_t N, class E>
std::string_view nameOf(const std::array<std::string_view, N>& names, E value) {
    const auto index = static_cast<std::size_t>(value);
    return index < N ? names[index] : "unknown";
}

void writeCells(const Spreadsheet& sheet, std::size_t row, JsonText& json) {
    json.raw("[");
    for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
        if (column > 0) json.raw(", ");
        const Spreadsheet::Cell cell = sheet.cell(row, column);
        switch (cell.kind) {
        case Spreadsheet::Cell::Kind::Number:
            json.number(cell.number);
            break;
        case Spreadsheet::Cell::Kind::Integer:
            json.number(cell.integer);
            break;
        case Spreadsheet::Cell::Kind::Text:
            if (cell.text.empty())
                json.raw("null"); // an empty cell, whatever its column holds
            else
                json.string(cell.text);
            break;
        case Spreadsheet::Cell::Kind::Empty:
            json.raw("null");
            break;
        }
    }
    json.raw("]");
}

void writeSpreadsheet(const Spreadsheet& sheet, JsonText& json) {
    std::vector<std::string> notes = sheet.notes;
    notes.insert(notes.end(), sheet.footnotes.begin(), sheet.footnotes.end());
    json.raw("\"title\": ").string(sheet.title).raw(", \"notes\": ").strings(notes).raw(", \"columns\": ");
    json.array(sheet.columns, ", ", [&json](const Spreadsheet::Column& column) {
        json.raw("[").string(column.heading1).raw(", ").string(column.heading2).raw("]");
    });
    json.raw(",\n  \"columnIds\": ").array(sheet.columns, ", ", [&json](const Spreadsheet::Column& column) {
        json.string(column.id);
    });
    json.raw(",\n  \"rows\": [");
    const std::size_t rows = sheet.rowCount();
    for (std::size_t row = 0; row < rows; ++row) {
        json.raw(row > 0 ? ",\n   " : "\n   ").raw("{\"heading\": ").string(sheet.rowHeading(row));
        json.raw(", \"cells\": ");
        writeCells(sheet, row, json);
        json.raw("}");
    }
    json.raw("]");
}

void writeSeries(const ozm::ChartSeries& series, JsonText& json) {
    const auto number = [&json](double value) { json.number(value); };
    json.raw("{\"legend\": ").string(series.legend).raw(", \"group\": ").number(series.group);
    json.raw(", \"style\": ").string(nameOf(styleNames, series.style));
    json.raw(", \"role\": ").string(nameOf(roleNames, series.role));
    json.raw(",\n   \"x\": ")
        .array(series.x, ", ", number)
        .raw(",\n   \"y\": ")
        .array(series.y, ", ", number);
    json.raw("}");
}

void writeChart(const ozm::CChartInfo& info, JsonText& json) {
    json.raw("\"title\": ")
        .string(info.title)
        .raw(", \"notes\": ")
        .strings(info.notes)
        .raw(", \"xAxis\": ")
        .string(info.xAxis.title);
    json.raw(", \"yAxis\": ")
        .string(info.yAxis.title)
        .raw(", \"kind\": ")
        .string(nameOf(kindNames, info.kind));
    const auto particulars = [&json](std::string_view axis, const ozm::ChartAxis& of) {
        if (of.logarithmic) json.raw(", \"").raw(axis).raw("Scale\": \"logarithmic\"");
        if (!of.names.empty()) json.raw(", \"").raw(axis).raw("Names\": ").strings(of.names);
    };
    particulars("x", info.xAxis);
    particulars("y", info.yAxis);
    json.raw(",\n  \"series\": ").array(info.series, ",\n  ", [&json](const auto& one) {
        writeSeries(one, json);
    });
}

void writeHead(const std::vector<std::string>& files, JsonText& json) {
    json.raw("{\"format\": ").string(resultsFormat).raw(", \"formatVersion\": ").number(resultsFormatVersion);
    json.raw(",\n\"program\": {\"name\": \"Korvana Survival\", \"version\": \"" KORVANA_VERSION "\"}");
    json.raw(",\n\"files\": ").strings(files);
}

} // namespace

void writeFileList(const std::vector<std::string>& files, std::ostream& out) {
    JsonText json(out);
    writeHead(files, json);
    json.raw("}\n").flush();
}

void writeJson(const ResultsBook& book, std::ostream& out, const std::vector<std::string>& files) {
    JsonText json(out);
    writeHead(files, json);
    json.raw(",\n\"analysis\": ").string(book.analysis).raw(",\n\"status\": ").number(book.status);
    json.raw(",\n\"source\": ").string(book.source).raw(",\n\"notes\": ").strings(book.notes);
    json.raw(",\n\"messages\": ").array(book.messages, ",\n ", [&json](const ResultMessage& message) {
        json.raw("{\"id\": ").number(message.id).raw(", \"text\": ").string(message.text);
        json.raw(", \"detail\": ").string(message.detail);
        json.raw(", \"severity\": ").string(nameOf(severityNames, message.severity)).raw("}");
    });
    JsonOrigins origins(book, json);
    json.raw(",\n\"runs\": ");
    origins.writeRuns();
    // Each kind of output: where it came from, then what it is.
    const auto outputs = [&]<class T>(const char* name, const auto& write) {
        json.raw(",\n\"").raw(name).raw("\": [");
        bool first = true;
        for (std::size_t place = 0; place < book.outputs.size(); ++place) {
            const T* output = std::get_if<T>(&book.outputs[place]);
            if (output == nullptr) continue;
            json.raw(first ? "{" : ",\n {");
            first = false;
            origins.write(place);
            write(*output);
            json.raw("}");
        }
        json.raw("]");
    };
    outputs.operator()<Report>("reports", [&json](const Report& report) {
        json.raw("\"title\": ").string(report.title).raw(", \"lines\": ").strings(report.lines);
    });
    outputs.operator()<Spreadsheet>("spreadsheets",
                                    [&json](const Spreadsheet& sheet) { writeSpreadsheet(sheet, json); });
    outputs.operator()<Chart>("charts", [&json](const Chart& chart) { writeChart(chart.info, json); });
    json.raw(",\n\"iterations\": ").strings(book.iterations).raw("}\n");
    json.flush();
}

} // namespace korvana
