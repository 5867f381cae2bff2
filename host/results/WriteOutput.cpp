#include "host/results/WriteOutput.h"

#include <array>
#include <stdexcept>

#include "host/results/ChartDrawing.h"
#include "host/results/CsvWriter.h"
#include "host/results/DataFile.h"
#include "host/results/HtmlWriter.h"
#include "host/results/JsonWriter.h"
#include "host/results/OriginText.h"
#include "host/results/OutputFile.h"
#include "host/results/RecordedScript.h"
#include "host/results/TextWriter.h"
#include "host/results/XlsxWriter.h"

namespace korvana {
namespace {

/// A book with this output alone, for the writers of books.
ResultsBook alone(const ResultsBook& book, std::size_t place, const Chart* chart) {
    ResultsBook one;
    one.analysis = book.analysis;
    one.source = book.source;
    if (chart != nullptr) {
        one.append(*chart);
    } else {
        one.outputs.push_back(book.outputs[place]);
    }
    if (const auto& origin = ResultsBook::originOf(book.outputs[place]); origin != nullptr) {
        one.notes = originLines(*origin);
        std::visit([&origin](auto& output) { output.origin = origin; }, one.outputs.front());
    }
    // It was asked for, even if its values are elsewhere too.
    if (auto* sheet = std::get_if<Spreadsheet>(&one.outputs.front())) sheet->repeatsReport = false;
    return one;
}

void writePicture(const Chart& chart, PictureFormat format, const std::filesystem::path& target) {
    const Picture picture = drawChart(chart.info, format);
    if (!picture.drawn()) throwCannotWrite(target, picture.error);
    writeFile(target, picture.bytes);
}

template <class Write>
void writeStream(const std::filesystem::path& target, Write write) {
    OutputFile file(target);
    write(file.stream());
    file.commit();
}

} // namespace

std::vector<OutputFormat> formatsOf(const ResultsBook::Output& output) {
    using enum OutputFormat;
    if (std::holds_alternative<Spreadsheet>(output)) return {Csv, Xlsx, Html, Txt, Json};
    if (std::holds_alternative<Chart>(output)) return {Svg, Png, Pdf, Html, Json};
    return {Txt, Html, Xlsx, Json};
}

const char* endingOf(OutputFormat format) {
    constexpr std::array<const char*, outputFormatCount> endings{"json", "txt", "csv", "html", "xlsx",
                                                                 "svg",  "png", "pdf", "py"};
    return endings.at(static_cast<std::size_t>(format));
}

void writeOutput(const ResultsBook& book, std::size_t place, const Chart* chart, OutputFormat format,
                 const std::filesystem::path& target) {
    const ResultsBook::Output& output = book.outputs.at(place);
    if (const auto& origin = ResultsBook::originOf(output); origin != nullptr && origin->run != nullptr)
        refuseDataFile(target, std::filesystem::path{origin->run->data.where()});
    const auto* sheet = std::get_if<Spreadsheet>(&output);
    if (chart == nullptr) chart = std::get_if<Chart>(&output);
    const auto refuse = [&target] {
        throwCannotWrite(target, "this output cannot be written in that format");
    };
    switch (format) {
    case OutputFormat::Csv:
        if (sheet == nullptr) refuse();
        writeStream(target, [sheet](std::ostream& out) { writeCsv(*sheet, out); });
        return;
    case OutputFormat::Svg:
    case OutputFormat::Png:
    case OutputFormat::Pdf:
        if (chart == nullptr) refuse();
        writePicture(*chart,
                     format == OutputFormat::Svg   ? PictureFormat::Svg
                     : format == OutputFormat::Png ? PictureFormat::Png
                                                   : PictureFormat::Pdf,
                     target);
        return;
    case OutputFormat::Txt:
        if (sheet != nullptr) {
            writeStream(target, [sheet](std::ostream& out) { writeText(*sheet, out); });
            return;
        }
        break;
    case OutputFormat::Json:
    case OutputFormat::Html:
    case OutputFormat::Xlsx:
        break;
    case OutputFormat::Py: // of a whole run
        refuse();
    }
    writeOneFile(alone(book, place, chart), format, target);
}

void writeOneFile(const ResultsBook& book, OutputFormat format, const std::filesystem::path& target) {
    refuseDataFile(target, book);
    switch (format) {
    case OutputFormat::Xlsx:
        return writeXlsx(book, target);
    case OutputFormat::Json:
        return writeStream(target, [&book](std::ostream& out) { writeJson(book, out); });
    case OutputFormat::Html:
        return writeStream(target, [&book](std::ostream& out) { writeHtml(book, out); });
    case OutputFormat::Txt:
        return writeStream(target, [&book](std::ostream& out) { writeText(book, out); });
    case OutputFormat::Py:
        return writeFile(target, recordedScript(book));
    case OutputFormat::Csv:
    case OutputFormat::Svg:
    case OutputFormat::Png:
    case OutputFormat::Pdf:
        break;
    }
    throwCannotWrite(target, "a file of that format holds one table or chart");
}

} // namespace korvana
