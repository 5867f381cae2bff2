#include "host/results/JsonWriter.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>

#include "host/results/FormatNumber.h"
#include "host/results/Utf8.h"

namespace korvana {
namespace {

/// Collects text and passes it on in pieces.
class JsonText {
public:
    explicit JsonText(std::ostream& out) : out_(out) {}

    JsonText& raw(std::string_view text) {
        text_ += text;
        if (text_.size() > kPiece) flush();
        return *this;
    }

    JsonText& string(std::string_view text) {
        text_ += '"';
        while (!text.empty())
            appendCharacter(takeCodePoint(text));
        return raw("\"");
    }

    JsonText& number(double value) {
        if (std::isfinite(value)) {
            appendNumber(text_, value);
        } else {
            text_ += "null";
        }
        return raw({});
    }

    /// [one, two, ...] with `write` called for each.
    template <class List, class Write>
    JsonText& array(const List& list, std::string_view separator, Write write) {
        raw("[");
        bool first = true;
        for (const auto& one : list) {
            if (!first) raw(separator);
            first = false;
            write(one);
        }
        return raw("]");
    }

    JsonText& strings(const std::vector<std::string>& list) {
        return array(list, ", ", [this](const std::string& one) { string(one); });
    }

    void flush() {
        out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
        text_.clear();
    }

private:
    static constexpr std::size_t kPiece = 32768;

    void appendCharacter(char32_t code) {
        if (code == '"' || code == '\\') {
            text_ += '\\';
            text_ += static_cast<char>(code);
        } else if (code == '\n') {
            text_ += "\\n";
        } else if (code == '\t') {
            text_ += "\\t";
        } else if (isControl(code)) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(code));
            text_ += escape.data();
        } else {
            appendCodePoint(text_, code);
        }
    }

    std::ostream& out_;
    std::string text_;
};

constexpr std::array<std::string_view, 3> kSeverities{"note", "warning", "error"};
constexpr std::array<std::string_view, 4> kKinds{"line", "step", "scatter", "histogram"};
constexpr std::array<std::string_view, 4> kStyles{"line", "step", "markers", "histogram"};
constexpr std::array<std::string_view, 5> kRoles{"estimate", "lower", "upper", "observed", "censored"};

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
    json.raw("{\"title\": ")
        .string(sheet.title)
        .raw(", \"notes\": ")
        .strings(sheet.notes)
        .raw(", \"columns\": ");
    json.array(sheet.columns, ", ", [&json](const Spreadsheet::Column& column) {
        json.raw("[").string(column.heading1).raw(", ").string(column.heading2).raw("]");
    });
    json.raw(",\n  \"rows\": [");
    const std::size_t rows = sheet.rowCount();
    for (std::size_t row = 0; row < rows; ++row) {
        json.raw(row > 0 ? ",\n   " : "\n   ").raw("{\"heading\": ").string(sheet.rowHeading(row));
        json.raw(", \"cells\": ");
        writeCells(sheet, row, json);
        json.raw("}");
    }
    json.raw("]}");
}

void writeSeries(const ozm::ChartSeries& series, JsonText& json) {
    const auto number = [&json](double value) { json.number(value); };
    json.raw("{\"legend\": ").string(series.legend).raw(", \"group\": ").number(series.group);
    json.raw(", \"style\": ").string(nameOf(kStyles, series.style));
    json.raw(", \"role\": ").string(nameOf(kRoles, series.role));
    json.raw(",\n   \"x\": ")
        .array(series.x, ", ", number)
        .raw(",\n   \"y\": ")
        .array(series.y, ", ", number);
    json.raw("}");
}

void writeChart(const ozm::CChartInfo& info, JsonText& json) {
    json.raw("{\"title\": ").string(info.title).raw(", \"xAxis\": ").string(info.xAxis.title);
    json.raw(", \"yAxis\": ").string(info.yAxis.title).raw(", \"kind\": ").string(nameOf(kKinds, info.kind));
    json.raw(",\n  \"series\": ").array(info.series, ",\n  ", [&json](const auto& one) {
        writeSeries(one, json);
    });
    json.raw("}");
}

} // namespace

void writeJson(const ResultsBook& book, std::ostream& out) {
    JsonText json(out);
    json.raw("{\"analysis\": ").string(book.analysis).raw(",\n\"status\": ").number(book.status);
    json.raw(",\n\"source\": ").string(book.source).raw(",\n\"notes\": ").strings(book.notes);
    json.raw(",\n\"messages\": ").array(book.messages, ",\n ", [&json](const ResultMessage& message) {
        json.raw("{\"id\": ").number(message.id).raw(", \"text\": ").string(message.text);
        json.raw(", \"detail\": ").string(message.detail);
        json.raw(", \"severity\": ").string(nameOf(kSeverities, message.severity)).raw("}");
    });
    json.raw(",\n\"reports\": ").array(book.all<Report>(), ",\n ", [&json](const Report* report) {
        json.raw("{\"title\": ").string(report->title).raw(", \"lines\": ").strings(report->lines).raw("}");
    });
    json.raw(",\n\"spreadsheets\": ")
        .array(book.all<Spreadsheet>(), ",\n ",
               [&json](const Spreadsheet* sheet) { writeSpreadsheet(*sheet, json); });
    json.raw(",\n\"charts\": ").array(book.all<Chart>(), ",\n ", [&json](const Chart* chart) {
        writeChart(chart->info, json);
    });
    json.raw(",\n\"iterations\": ").strings(book.iterations).raw("}\n");
    json.flush();
}

} // namespace korvana
