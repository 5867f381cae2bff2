#include "apps/desktop/results/OutputExport.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "host/results/ChartDrawing.h"
#include "host/results/CsvWriter.h"
#include "host/results/HtmlWriter.h"
#include "host/results/JsonWriter.h"
#include "host/results/OriginText.h"
#include "host/results/OutputFile.h"
#include "host/results/TextWriter.h"
#include "host/results/XlsxWriter.h"

namespace korvana::desktop {
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
    constexpr std::array<const char*, outputFormatCount> endings{"json", "txt", "csv", "html",
                                                                 "xlsx", "svg", "png", "pdf"};
    return endings.at(static_cast<std::size_t>(format));
}

void exportOutput(const ResultsBook& book, std::size_t place, const Chart* chart, OutputFormat format,
                  const std::filesystem::path& target) {
    const ResultsBook::Output& output = book.outputs.at(place);
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
    }
    const ResultsBook one = alone(book, place, chart);
    if (format == OutputFormat::Xlsx) {
        writeXlsx(one, target);
        return;
    }
    writeStream(target, [&one, format](std::ostream& out) {
        if (format == OutputFormat::Json) writeJson(one, out);
        if (format == OutputFormat::Html) writeHtml(one, out);
        if (format == OutputFormat::Txt) writeText(one, out);
    });
}

ResultsBook withEdits(const ResultsBook& book, const std::map<std::size_t, ChartEdits>& edits,
                      const std::vector<std::size_t>& removed) {
    ResultsBook copy = book;
    for (const auto& [place, changes] : edits) {
        if (place >= copy.outputs.size()) continue;
        auto* chart = std::get_if<Chart>(&copy.outputs[place]);
        if (chart == nullptr) continue;
        chart->info = edited(chart->info, changes);
    }
    for (auto place = removed.rbegin(); place != removed.rend(); ++place)
        copy.outputs.erase(copy.outputs.begin() + static_cast<std::ptrdiff_t>(*place));
    return copy;
}

std::vector<std::string> filesToWrite(const ResultsBook& book, const std::map<std::size_t, ChartEdits>& edits,
                                      const std::vector<std::size_t>& removed, FormatSet formats) {
    ResultsBook titles; // names depend on titles alone
    for (std::size_t place = 0; place < book.outputs.size(); ++place) {
        if (std::binary_search(removed.begin(), removed.end(), place)) continue;
        const ResultsBook::Output& output = book.outputs[place];
        if (const auto* sheet = std::get_if<Spreadsheet>(&output))
            titles.append(Spreadsheet{}).title = sheet->title;
        if (const auto* chart = std::get_if<Chart>(&output)) {
            const auto edit = edits.find(place);
            titles.append(Chart{}).info.title =
                edit != edits.end() && edit->second.title ? *edit->second.title : chart->info.title;
        }
    }
    std::vector<std::string> files;
    const auto whole = [&](OutputFormat format, const char* name) {
        if (formats.has(format)) files.emplace_back(name);
    };
    whole(OutputFormat::Txt, "report.txt");
    whole(OutputFormat::Json, "results.json");
    whole(OutputFormat::Html, "report.html");
    whole(OutputFormat::Xlsx, "results.xlsx");
    const std::vector<std::string> names = fileNames(titles);
    for (std::size_t place = 0; place < names.size(); ++place) {
        using enum OutputFormat;
        const bool table = std::holds_alternative<Spreadsheet>(titles.outputs[place]);
        for (const OutputFormat format : table ? std::vector{Csv} : std::vector{Svg, Png, Pdf})
            if (formats.has(format)) files.push_back(names[place] + "." + endingOf(format));
    }
    return files;
}

} // namespace korvana::desktop
